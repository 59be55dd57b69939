#include "picker/content/QXSDKKovalinStickerPickerContentView.h"

#include "content/QXSDKKovalinFriendState.h"
#include "picker/content/BlendedStickers.h"
#include "picker/content/QXSDKKovalinStickerPickerContentViewState.h"
#include "platform/dispatch/ThreadCheck.h"
#include "search/QXSDKKovalinFusionSearchEngine.h"

#include <utility>

using namespace kovalin::platform;

namespace {

using ContentView = QXSDKKovalinStickerPickerContentView;

// Points.
constexpr int barHeight = 40;
/// The same whichever bars are shown.
constexpr double hideableHeight = 80;

/// Characters, in UTF-16 units, from which on a text is searched.
constexpr qsizetype shortestSearch = 2;

} // namespace

KovalinStickerPickerContentViewDelegate::~KovalinStickerPickerContentViewDelegate() = default;

// Making

ContentView::Sources QXSDKKovalinStickerPickerContentView::Sources::shared()
{
    const auto engine = QXSDKKovalinFusionSearchEngine::shared();
    return {engine, engine, QXSDKKovalinStickerDataProvider::shared(), QXSDKKovalinCache::shared()};
}

std::shared_ptr<ContentView>
QXSDKKovalinStickerPickerContentView::create(const QRectF& frame,
                                             const std::shared_ptr<QXSDKKovalinFriendState>& friendState,
                                             const QXSDKKovalinStickerPickerConfigPtr& config, const Sources& sources)
{
    const auto chosen = config ? config : std::make_shared<QXSDKKovalinStickerPickerConfig>();
    const std::shared_ptr<ContentView> made(new ContentView(std::make_unique<State>(friendState, chosen, sources)),
                                            ViewDeleter());
    made->setFrame(frame);
    State& content = *made->_content;
    content.gridController->setDelegate(made);
    content.tagSelector->setDelegate(made);
    content.searchBar->setDelegate(made);
    sources.searchEngine->addObserver(made);
    friendState->addFriendAvatarObserver(made);
    return made;
}

QXSDKKovalinStickerPickerContentView::QXSDKKovalinStickerPickerContentView(std::unique_ptr<State> state)
    : _content(std::move(state))
{
    const int bars = int(_content->isSearchBarVisible) + int(_content->areSearchPillsVisible);
    _content->gridController->setTopInset(bars * barHeight);
    addSubview(_content->gridController->view());
    // Without a size it can't be seen; hidden, neither the keyboard nor an assistive tool finds it.
    _content->tagSelector->setHidden(!_content->areSearchPillsVisible);
    addSubview(_content->tagSelector);
    _content->searchBar->setHidden(!_content->isSearchBarVisible);
    addSubview(_content->searchBar);
    setScrollView(_content->gridController->view());
    setMaxNavbarOffset(hideableHeight);
    setAccessibilityIdentifier(QStringLiteral("qxsdk_kovalin_content"));
}

QXSDKKovalinStickerPickerContentView::~QXSDKKovalinStickerPickerContentView() = default;

QXSDKKovalinViewType QXSDKKovalinStickerPickerContentView::type() const
{
    return QXSDKKovalinViewTypeContent;
}

void QXSDKKovalinStickerPickerContentView::setDelegate(
    const std::weak_ptr<KovalinStickerPickerContentViewDelegate>& delegate)
{
    assertOnMainThread();
    _content->delegate = delegate;
}

double QXSDKKovalinStickerPickerContentView::coldStartTime() const
{
    return _content->coldStartTime;
}

const QString& QXSDKKovalinStickerPickerContentView::friendLinkageId() const
{
    return _content->friendLinkageId;
}

void QXSDKKovalinStickerPickerContentView::setFriendLinkageId(const QString& friendLinkageId)
{
    assertOnMainThread();
    _content->friendLinkageId = friendLinkageId;
}

void QXSDKKovalinStickerPickerContentView::layoutSubviews()
{
    QXSDKHideableNavbarView::layoutSubviews();
    const double width = bounds().width();
    const double offset = navbarOffset();
    const double searchBarHeight = _content->isSearchBarVisible ? barHeight : 0;
    const double tagSelectorHeight = _content->areSearchPillsVisible ? barHeight : 0;

    _content->gridController->view()->setFrame(bounds());
    // At half the speed, so that the tags slide under it.
    _content->searchBar->setFrame({0, -offset / 2, _content->isSearchBarVisible ? width : 0, searchBarHeight});
    _content->tagSelector->setFrame(
        {0, searchBarHeight - offset, _content->areSearchPillsVisible ? width : 0, tagSelectorHeight});
    if (_content->tagResultsView) {
        _content->tagResultsView->setFrame(bounds());
    }
}

// What is shown

void QXSDKKovalinStickerPickerContentView::showPopularKovalinsAndDefaultTagTiles()
{
    assertOnMainThread();
    const Sources& sources = _content->sources;
    setKovalins(sources.dataProvider->popularKovalins());
    if (sources.searchEngine->isInitialized()) {
        _showTags(sources.dataProvider->defaultTags().value_or(QStringList()));
    }
}

KovalinStickerListPtr QXSDKKovalinStickerPickerContentView::kovalins() const
{
    return _content->gridController->kovalins();
}

void QXSDKKovalinStickerPickerContentView::setKovalins(const KovalinStickerListPtr& kovalins)
{
    assertOnMainThread();
    _content->givenKovalins = kovalins;
    _content->gridController->setKovalins(kovalins);
    setNavbarOffset(navbarOffset());
}

void QXSDKKovalinStickerPickerContentView::_showTags(const QStringList& tags)
{
    _content->tagSelector->setTagTiles(
        std::make_shared<const QXSDKTagTileList>(_content->tagTileFactory.fromTags(tags, *_content->sources.tagIndex)));
}

bool QXSDKKovalinStickerPickerContentView::_isShowingPopular() const
{
    const KovalinStickerListPtr popular = _content->sources.dataProvider->popularKovalins();
    return popular && popular == _content->givenKovalins;
}

void QXSDKKovalinStickerPickerContentView::_presentResultsForTagTile(const QXSDKTagTilePtr& tagTile)
{
    _leaveTagResults();
    const Sources& sources = _content->sources;
    const auto stickers = std::make_shared<const KovalinStickerList>(
        sources.searchEngine->searchWithExactMatch(tagTile->text(), _resultTypes()));
    _content->tagResultsView =
        QXSDKKovalinTagResultsView::create(tagTile, stickers, _content->friendState, _content->config, sources.cache);
    _content->tagResultsView->setFrame(bounds());
    _content->tagResultsView->setDelegate(
        std::static_pointer_cast<QXSDKKovalinStickerPickerContentView>(shared_from_this()));
    addSubview(_content->tagResultsView);
    _setIsCovered(true);
}

void QXSDKKovalinStickerPickerContentView::_leaveTagResults()
{
    if (_content->tagResultsView) {
        _content->tagResultsView->removeFromSuperview();
    }
    _setIsCovered(false);
}

void QXSDKKovalinStickerPickerContentView::_setIsCovered(bool isCovered)
{
    // The keyboard doesn't walk through what can't be seen.
    _content->gridController->view()->setEnabled(!isCovered);
    _content->tagSelector->setEnabled(!isCovered);
    _content->searchBar->setEnabled(!isCovered);
}

// Searching

QXSDKKovalinSearchTermList QXSDKKovalinStickerPickerContentView::popAllSearchSequence()
{
    assertOnMainThread();
    return _content->searchSequence.popAll();
}

void QXSDKKovalinStickerPickerContentView::setSearchTerm(const QString& searchTerm, QXSDKKovalinSearchMode searchMode,
                                                         QXSDKKovalinCategory category, const Completion& completion)
{
    assertOnMainThread();
    // Whom the completion tells may let the view go.
    const auto self = weak_from_this().lock();
    if (searchMode == QXSDKKovalinSearchModeReplace) {
        _content->searchBar->setText(searchTerm);
    }
    _content->searchTerm = searchTerm;
    _searchTextDidChange(searchTerm, searchMode, category, completion);
    _leaveTagResults();
}

void QXSDKKovalinStickerPickerContentView::_clearSearchState()
{
    _content->searchBar->setText(QString());
    showPopularKovalinsAndDefaultTagTiles();
}

void QXSDKKovalinStickerPickerContentView::_searchTextDidChange(const QString& text, QXSDKKovalinSearchMode searchMode,
                                                                QXSDKKovalinCategory category,
                                                                const Completion& completion)
{
    _content->searchCategory = category;
    // A term of the host's is no search of the user's.
    if (category != QXSDKKovalinCategoryHostTerm) {
        _content->searchSequence.push(text, category);
    } else if (searchMode != QXSDKKovalinSearchModeReplace) {
        _clearSearchState();
    }
    if (text.size() < shortestSearch) {
        showPopularKovalinsAndDefaultTagTiles();
        if (completion) {
            completion(nullptr);
        }
        return;
    }
    _content->sources.searchEngine->search(
        text, _resultTypes(),
        [weakSelf = weak_from_this(), text, searchMode, completion](const auto& stickers, const auto& tags) {
            if (const auto self = std::static_pointer_cast<ContentView>(weakSelf.lock())) {
                self->_searchDidEnd(text, searchMode, stickers, tags);
            }
            if (completion) {
                completion(stickers.isEmpty() ? nullptr : stickers.first());
            }
        });
}

void QXSDKKovalinStickerPickerContentView::_searchDidEnd(const QString& text, QXSDKKovalinSearchMode searchMode,
                                                         const KovalinStickerList& stickers, const QStringList& tags)
{
    if (text != _content->searchBar->text() && text != _content->searchTerm) {
        return;
    }
    if (searchMode == QXSDKKovalinSearchModeBlend) {
        setKovalins(blendedStickers(stickers, _content->sources.dataProvider->popularKovalins()));
        return;
    }
    setKovalins(std::make_shared<const KovalinStickerList>(stickers));
    _showTags(tags);
}

void QXSDKKovalinStickerPickerContentView::_refresh()
{
    _searchTextDidChange(_content->searchBar->text(), QXSDKKovalinSearchModeReplace, _content->searchCategory, {});
}

QXSDKKovalinSearchResultTypes QXSDKKovalinStickerPickerContentView::_resultTypes() const
{
    QXSDKKovalinSearchResultTypes types{QXSDKKovalinSearchResultTypeSolovalin};
    if (_content->friendState->friendAvatarId()) {
        types.append(QXSDKKovalinSearchResultTypeFriendvalin);
    }
    return types;
}

void QXSDKKovalinStickerPickerContentView::searchEngineDidProcessPacks()
{
    _refresh();
}

void QXSDKKovalinStickerPickerContentView::kovalinFriendAvatarDidChange(const std::optional<QString>& friendAvatarId,
                                                                        const QStringList& /*otherAvatarIds*/)
{
    _content->gridController->setFriendAvatarId(friendAvatarId);
    _refresh();
}
