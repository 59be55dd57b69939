#pragma once

#include "content/QXSDKKovalinCache.h"
#include "content/QXSDKKovalinFriendAvatarObserver.h"
#include "picker/bars/QXSDKHideableNavbarView.h"
#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/grid/QXSDKKovalinStickerGridController.h"
#include "picker/tags/QXSDKTagTile.h"

#include <memory>

class QXSDKKovalinFriendState;

/// Told what the user does on a page of a tag's stickers. Called on the main thread; may do anything, such as letting go
/// of the page.
class QXSDKKovalinTagResultsViewDelegate {
public:
    QXSDKKovalinTagResultsViewDelegate() = default;
    virtual ~QXSDKKovalinTagResultsViewDelegate();
    Q_DISABLE_COPY_MOVE(QXSDKKovalinTagResultsViewDelegate)

    /// A sticker that has its picture was tapped. The picture is the one on show, the tile the page's.
    virtual void kovalinTagResultsViewDidSelectKovalinWithURL(const KovalinStickerPtr& sticker, const QImage& image,
                                                              const QXSDKTagTilePtr& tagTile) = 0;
    /// The button that leads away from the search was tapped.
    virtual void kovalinTagResultsViewDidTapCancel() = 0;
    /// The button that leads back was tapped, or the header beside the buttons.
    virtual void kovalinTagResultsViewDidTapBack() = 0;
};

/// The page of a tag: its stickers, below a header that is pushed away as they scroll. Thread and lifetime as of `View`.
class QXSDKKovalinTagResultsView final : public QXSDKHideableNavbarView,
                                         public QXSDKKovalinStickerGridControllerDelegate,
                                         public QXSDKKovalinFriendAvatarObserver {
    Q_OBJECT

public:
    /// A list whose identity counts.
    using List = QXSDKKovalinStickerGridController::List;

    /// Shows the list as it is, also the two-person stickers in it where no friend is known. Takes the colours of the
    /// configuration's theme, or of the default one if that is null. Pictures come from `cache`.
    ///
    /// Requires: neither the tile nor the friend state is null. A null list is an empty one.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinTagResultsView>
    create(const QXSDKTagTilePtr& tagTile, const List& kovalins,
           const std::shared_ptr<QXSDKKovalinFriendState>& friendState,
           const QXSDKKovalinStickerPickerConfigPtr& config,
           const std::shared_ptr<QXSDKKovalinCache>& cache = QXSDKKovalinCache::shared());
    ~QXSDKKovalinTagResultsView() override;

    /// Held weakly.
    void setDelegate(const std::weak_ptr<QXSDKKovalinTagResultsViewDelegate>& delegate);

    void layoutSubviews() override;

    // For the grid.

    void stickerGridControllerDidSelectSticker(const KovalinStickerPtr& sticker, const QImage& image) override;
    void stickerGridControllerDidScroll(kovalin::platform::ScrollView& scrollView) override;
    void stickerGridControllerDidRenderFirstSticker() override;

    // For the friend state.

    void kovalinFriendAvatarDidChange(const std::optional<QString>& friendAvatarId,
                                      const QStringList& otherAvatarIds) override;

private:
    struct State;

    explicit QXSDKKovalinTagResultsView(std::unique_ptr<State> state);

    void _backPressed();
    void _cancelPressed();

    const std::unique_ptr<State> _page;
};
