// What a content view does when its parts tell it something.

#include "picker/content/QXSDKKovalinStickerPickerContentViewState.h"

#include <QtGui/QKeyEvent>

using namespace kovalin::platform;

// The search bar

void QXSDKKovalinStickerPickerContentView::searchBarViewDidChangeSearchText(KovalinSearchBarView& /*searchBar*/,
                                                                            const QString& text)
{
    _searchTextDidChange(text, QXSDKKovalinSearchModeReplace, QXSDKKovalinCategoryTypedText, {});
}

void QXSDKKovalinStickerPickerContentView::searchBarViewDidBecomeFirstResponder(KovalinSearchBarView& /*searchBar*/)
{
    setNavbarOffset(0);
    if (const auto delegate = _content->delegate.lock()) {
        delegate->kovalinStickerPickerContentViewSearchFieldFocusDidChangeWithFocus(*this, true);
    }
}

void QXSDKKovalinStickerPickerContentView::searchBarViewDidResignFirstResponder(KovalinSearchBarView& /*searchBar*/)
{
    if (const auto delegate = _content->delegate.lock()) {
        delegate->kovalinStickerPickerContentViewSearchFieldFocusDidChangeWithFocus(*this, false);
    }
}

void QXSDKKovalinStickerPickerContentView::keyPressEvent(QKeyEvent* event)
{
    KovalinSearchBarView& searchBar = *_content->searchBar;
    const bool isBarThere = _content->isSearchBarVisible && searchBar.isEnabled();
    event->setAccepted(isBarThere && searchBar.acceptKeyPress(*event));
}

// The stickers

void QXSDKKovalinStickerPickerContentView::stickerGridControllerDidSelectSticker(const KovalinStickerPtr& sticker,
                                                                                 const QImage& image)
{
    const auto self = weak_from_this().lock();
    _content->searchBar->endEditing();
    _select(sticker, image, _isShowingPopular() ? QXSDKKovalinCategoryNone : _content->searchCategory);
}

void QXSDKKovalinStickerPickerContentView::stickerGridControllerDidScroll(ScrollView& /*scrollView*/)
{
    if (!_content->searchBar->isFirstResponder()) {
        updateNavbarOffset();
    }
}

void QXSDKKovalinStickerPickerContentView::stickerGridControllerDidRenderFirstSticker()
{
    if (const auto delegate = _content->delegate.lock()) {
        delegate->kovalinStickerPickerContentViewDidRenderFirstSticker(*this, _content->coldStartTime);
    }
}

void QXSDKKovalinStickerPickerContentView::_select(const KovalinStickerPtr& sticker, const QImage& image,
                                                   QXSDKKovalinCategory category)
{
    const auto self = weak_from_this().lock();
    const QXSDKKovalinSearchTermList searchSequence = _content->searchSequence.popAll();
    if (const auto delegate = _content->delegate.lock()) {
        delegate->kovalinStickerPickerContentViewDidSelectSticker(*this, sticker, image, category, searchSequence);
    }
}

// The tags

QXSDKKovalinCategory QXSDKKovalinStickerPickerContentView::_categoryOfTags() const
{
    return _isShowingPopular() ? QXSDKKovalinCategoryDefaultTag : QXSDKKovalinCategorySuggestedTag;
}

void QXSDKKovalinStickerPickerContentView::kovalinTagSelectorViewDidSelectTag(const QXSDKTagTilePtr& tagTile)
{
    const auto self = weak_from_this().lock();
    if (!self) {
        return;
    }
    _content->searchBar->endEditing();
    _content->searchSequence.push(tagTile->text(), _categoryOfTags());
    setNavbarOffset(0);
    _presentResultsForTagTile(tagTile);
    if (const auto delegate = _content->delegate.lock()) {
        delegate->kovalinStickerPickerContentViewDidSelectSearchTag(*this);
    }
}

void QXSDKKovalinStickerPickerContentView::kovalinTagResultsViewDidSelectKovalinWithURL(
    const KovalinStickerPtr& sticker, const QImage& image, const QXSDKTagTilePtr& /*tagTile*/)
{
    _select(sticker, image, _categoryOfTags());
}

void QXSDKKovalinStickerPickerContentView::kovalinTagResultsViewDidTapBack()
{
    _leaveTagResults();
}

void QXSDKKovalinStickerPickerContentView::kovalinTagResultsViewDidTapCancel()
{
    const auto self = weak_from_this().lock();
    _leaveTagResults();
    _content->searchBar->setText(QString());
    showPopularKovalinsAndDefaultTagTiles();
}
