#pragma once

#include "content/QXSDKKovalinFriendAvatarObserver.h"
#include "content/QXSDKKovalinStickerDataProvider.h"
#include "picker/bars/KovalinSearchBarView.h"
#include "picker/bars/QXSDKHideableNavbarView.h"
#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/config/QXSDKKovalinViewProtocol.h"
#include "picker/content/QXSDKKovalinSearchMode.h"
#include "picker/grid/QXSDKKovalinStickerGridController.h"
#include "picker/tags/QXSDKKovalinTagResultsView.h"
#include "picker/tags/QXSDKKovalinTagSelectorView.h"
#include "search/QXSDKKovalinCategory.h"
#include "search/QXSDKKovalinSearchEngine.h"
#include "search/QXSDKKovalinSearchResultType.h"
#include "search/QXSDKKovalinSearchTerm.h"
#include "search/QXSDKKovalinTagIndex.h"

#include <QtCore/QRectF>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <memory>

class QXSDKKovalinFriendState;
class QXSDKKovalinStickerPickerContentView;

/// Told what happens in a content view. Called on the main thread; may do anything, such as letting go of the view.
class KovalinStickerPickerContentViewDelegate {
public:
    KovalinStickerPickerContentViewDelegate() = default;
    virtual ~KovalinStickerPickerContentViewDelegate();
    Q_DISABLE_COPY_MOVE(KovalinStickerPickerContentViewDelegate)

    /// A sticker that has its picture was tapped: how it was found, and what was searched since the last one.
    virtual void kovalinStickerPickerContentViewDidSelectSticker(QXSDKKovalinStickerPickerContentView& contentView,
                                                                 const KovalinStickerPtr& sticker, const QImage& image,
                                                                 QXSDKKovalinCategory category,
                                                                 const QXSDKKovalinSearchTermList& searchSequence) = 0;
    virtual void
    kovalinStickerPickerContentViewSearchFieldFocusDidChangeWithFocus(QXSDKKovalinStickerPickerContentView& contentView,
                                                                      bool hasFocus) = 0;
    virtual void
    kovalinStickerPickerContentViewDidSelectSearchTag(QXSDKKovalinStickerPickerContentView& contentView) = 0;
    /// Once in the view's life. `contentViewStartTime` is when it was made, in seconds since 1970.
    virtual void kovalinStickerPickerContentViewDidRenderFirstSticker(QXSDKKovalinStickerPickerContentView& contentView,
                                                                      double contentViewStartTime) = 0;
};

/// The picker's main view: the search bar, the tags and the stickers, and on top of them the page of a tag. What is
/// typed, tapped and set from outside is searched here. Thread and lifetime as of `View`; a search that is under way
/// doesn't keep it.
///
/// A result counts if it is for what the search bar says by then or for the last term from outside, whichever search of
/// that text it answers; others are dropped. Nothing cancels a search.
///
/// A key that nothing in the view uses goes to the search bar, which takes what can be typed.
class QXSDKKovalinStickerPickerContentView final : public QXSDKHideableNavbarView,
                                                   public QXSDKKovalinViewProtocol,
                                                   public QXSDKKovalinStickerGridControllerDelegate,
                                                   public KovalinSearchBarViewDelegate,
                                                   public QXSDKKovalinTagSelectorViewDelegate,
                                                   public QXSDKKovalinTagResultsViewDelegate,
                                                   public QXSDKKovalinSearchEngineObserver,
                                                   public QXSDKKovalinFriendAvatarObserver {
    Q_OBJECT

public:
    /// What it searches, and where stickers and their pictures come from; never null.
    struct Sources {
        std::shared_ptr<QXSDKKovalinSearchEngine> searchEngine;
        std::shared_ptr<const QXSDKKovalinTagIndex> tagIndex;
        std::shared_ptr<QXSDKKovalinStickerDataProvider> dataProvider;
        std::shared_ptr<QXSDKKovalinCache> cache;

        /// Those of the process: the fusion engine, which is also the index of tags, the data provider and the cache.
        [[nodiscard]] static Sources shared();
    };

    /// Empty until `showPopularKovalinsAndDefaultTagTiles`. Takes what the configuration says now, or the default one
    /// if that is null.
    ///
    /// Requires: the friend state isn't null.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinStickerPickerContentView>
    create(const QRectF& frame, const std::shared_ptr<QXSDKKovalinFriendState>& friendState,
           const QXSDKKovalinStickerPickerConfigPtr& config, const Sources& sources = Sources::shared());
    ~QXSDKKovalinStickerPickerContentView() override;

    [[nodiscard]] QXSDKKovalinViewType type() const override;

    /// Held weakly.
    void setDelegate(const std::weak_ptr<KovalinStickerPickerContentViewDelegate>& delegate);

    /// Back to browsing. The tags stay as they are until there is an index, which gives them their colours.
    void showPopularKovalinsAndDefaultTagTiles();

    /// Hands over what was searched since the last time, as at the end of a session.
    [[nodiscard]] QXSDKKovalinSearchTermList popAllSearchSequence();

    /// What the grid shows; never null.
    [[nodiscard]] KovalinStickerListPtr kovalins() const;
    /// Null is an empty list.
    void setKovalins(const KovalinStickerListPtr& kovalins);

    /// A search from outside, which also leaves the page of a tag. `completion`, which may be empty, is called once, on
    /// the main thread: with the first result, or null if there is none; for a term of fewer than 2 characters at once,
    /// otherwise when the engine has answered, whether or not the answer counts or the view is still there.
    void setSearchTerm(const QString& searchTerm, QXSDKKovalinSearchMode searchMode, QXSDKKovalinCategory category,
                       const std::function<void(const KovalinStickerPtr&)>& completion = {});

    /// When the view was made, in seconds since 1970.
    [[nodiscard]] double coldStartTime() const;

    /// Kept for its owner.
    [[nodiscard]] const QString& friendLinkageId() const;
    void setFriendLinkageId(const QString& friendLinkageId);

    void layoutSubviews() override;

    // For the parts.

    void stickerGridControllerDidSelectSticker(const KovalinStickerPtr& sticker, const QImage& image) override;
    void stickerGridControllerDidScroll(kovalin::platform::ScrollView& scrollView) override;
    void stickerGridControllerDidRenderFirstSticker() override;

    void searchBarViewDidChangeSearchText(KovalinSearchBarView& searchBar, const QString& text) override;
    void searchBarViewDidBecomeFirstResponder(KovalinSearchBarView& searchBar) override;
    void searchBarViewDidResignFirstResponder(KovalinSearchBarView& searchBar) override;

    void kovalinTagSelectorViewDidSelectTag(const QXSDKTagTilePtr& tagTile) override;

    void kovalinTagResultsViewDidSelectKovalinWithURL(const KovalinStickerPtr& sticker, const QImage& image,
                                                      const QXSDKTagTilePtr& tagTile) override;
    void kovalinTagResultsViewDidTapCancel() override;
    void kovalinTagResultsViewDidTapBack() override;

    void searchEngineDidProcessPacks() override;
    void kovalinFriendAvatarDidChange(const std::optional<QString>& friendAvatarId,
                                      const QStringList& otherAvatarIds) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct State;
    using Completion = std::function<void(const KovalinStickerPtr&)>;

    explicit QXSDKKovalinStickerPickerContentView(std::unique_ptr<State> state);

    void _clearSearchState();
    void _searchTextDidChange(const QString& text, QXSDKKovalinSearchMode searchMode, QXSDKKovalinCategory category,
                              const Completion& completion);
    void _searchDidEnd(const QString& text, QXSDKKovalinSearchMode searchMode, const KovalinStickerList& stickers,
                       const QStringList& tags);
    void _refresh();
    void _showTags(const QStringList& tags);
    void _presentResultsForTagTile(const QXSDKTagTilePtr& tagTile);
    void _leaveTagResults();
    void _setIsCovered(bool isCovered);
    [[nodiscard]] bool _isShowingPopular() const;
    [[nodiscard]] QXSDKKovalinCategory _categoryOfTags() const;
    [[nodiscard]] QXSDKKovalinSearchResultTypes _resultTypes() const;
    void _select(const KovalinStickerPtr& sticker, const QImage& image, QXSDKKovalinCategory category);

    const std::unique_ptr<State> _content;
};
