#pragma once

#include "content/QXSDKKovalinCache.h"
#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/grid/QXSDKCollectionViewUpdater.h"
#include "picker/grid/QXSDKKovalinStickerCollectionViewCell.h"
#include "platform/foundation/WeakSet.h"
#include "platform/ui/CollectionView.h"
#include "search/KovalinSticker.h"

#include <QtCore/QString>
#include <QtGui/QImage>

#include <memory>
#include <optional>

/// Told of what happens in a sticker grid. Main thread only.
class QXSDKKovalinStickerGridControllerDelegate {
public:
    virtual ~QXSDKKovalinStickerGridControllerDelegate();

    /// A tile that has its picture was tapped. The picture is the one on show.
    virtual void stickerGridControllerDidSelectSticker(const KovalinStickerPtr& sticker, const QImage& image) = 0;
    /// The grid's content offset is different.
    virtual void stickerGridControllerDidScroll(kovalin::platform::ScrollView& scrollView) = 0;
    /// A tile got its picture, the first one of the grid: once in the grid's life.
    virtual void stickerGridControllerDidRenderFirstSticker() = 0;
};

/// Shows a list of stickers as square tiles in a collection view: four in a row and one more for each full 100 points,
/// or one row where the layout scrolls horizontally. While no friend is set, it leaves two-person stickers out of the
/// lists that it is given; the first list stays as it is.
///
/// A tap on a tile that failed loads all failed tiles anew.
///
/// Main thread only. Lifetime: holds its view, which may outlive it, and then shows no more tiles. Delegates are held
/// weakly.
class QXSDKKovalinStickerGridController final : public kovalin::platform::CollectionViewDataSource,
                                                public kovalin::platform::CollectionViewDelegate,
                                                public QXSDKKovalinStickerCollectionViewCellDelegate,
                                                public std::enable_shared_from_this<QXSDKKovalinStickerGridController> {
public:
    using Ptr = std::shared_ptr<QXSDKKovalinStickerGridController>;
    using Cache = std::shared_ptr<QXSDKKovalinCache>;
    using Layout = std::shared_ptr<kovalin::platform::CollectionViewFlowLayout>;
    /// A list whose identity counts.
    using List = QXSDKCollectionViewUpdater<KovalinSticker>::List;

    // Making. Without a layout it is a vertical one without spacing, without a configuration the default one. Neither
    // is null; the layout belongs to the grid alone. A null list is an empty one. Pictures come from `cache`.

    [[nodiscard]] static Ptr create(const Cache& cache = QXSDKKovalinCache::shared());
    [[nodiscard]] static Ptr create(const List& kovalins, const QXSDKKovalinStickerPickerConfigPtr& config,
                                    const Cache& cache = QXSDKKovalinCache::shared());
    [[nodiscard]] static Ptr create(const List& kovalins, const Layout& layout,
                                    const Cache& cache = QXSDKKovalinCache::shared());
    [[nodiscard]] static Ptr create(const List& kovalins, const Layout& layout,
                                    const QXSDKKovalinStickerPickerConfigPtr& config,
                                    const Cache& cache = QXSDKKovalinCache::shared());
    ~QXSDKKovalinStickerGridController() override;
    Q_DISABLE_COPY_MOVE(QXSDKKovalinStickerGridController)

    /// For a superview to place.
    [[nodiscard]] const std::shared_ptr<kovalin::platform::CollectionView>& view() const;

    void setDelegate(const std::weak_ptr<QXSDKKovalinStickerGridControllerDelegate>& delegate);

    /// The list that is shown, or that the animation under way leads to: with a friend the very list that was set.
    /// Never null.
    [[nodiscard]] List kovalins() const;
    /// Scrolls to the top and plays the change; nothing for the list that is shown already. Null is an empty list.
    void setKovalins(const List& kovalins);

    /// Whose avatar two-person stickers are drawn with; absent at first.
    [[nodiscard]] const std::optional<QString>& friendAvatarId() const;
    /// For another friend the two-person tiles on screen are loaded anew; without one they go at once. The first friend
    /// changes nothing: the owner sets a list with two-person stickers if it wants them.
    void setFriendAvatarId(const std::optional<QString>& friendAvatarId);

    /// Points at the top that something else lies over, 0 at first. Tiles begin 4 points below.
    [[nodiscard]] int topInset() const;
    void setTopInset(int points);

    // For the view.

    [[nodiscard]] qsizetype
    collectionViewNumberOfItemsInSection(kovalin::platform::CollectionView& collectionView) override;
    [[nodiscard]] std::shared_ptr<kovalin::platform::CollectionViewCell>
    collectionViewCellForItemAtIndexPath(kovalin::platform::CollectionView& collectionView, qsizetype item) override;
    [[nodiscard]] QString
    collectionViewAccessibilityLabelForItemAtIndexPath(kovalin::platform::CollectionView& collectionView,
                                                       qsizetype item) override;
    [[nodiscard]] QSizeF collectionViewLayoutSizeForItemAtIndexPath(kovalin::platform::CollectionView& collectionView,
                                                                    qsizetype item) override;
    void collectionViewDidSelectItemAtIndexPath(kovalin::platform::CollectionView& collectionView,
                                                qsizetype item) override;
    void scrollViewDidScroll(kovalin::platform::ScrollView& scrollView) override;

    // For the cells.

    void stickerCollectionViewCellLoadDidSucceed(
        const std::shared_ptr<QXSDKKovalinStickerCollectionViewCell>& cell) override;
    void
    stickerCollectionViewCellLoadDidFail(const std::shared_ptr<QXSDKKovalinStickerCollectionViewCell>& cell) override;

private:
    QXSDKKovalinStickerGridController(const List& kovalins, const Layout& layout,
                                      const QXSDKKovalinStickerPickerConfigPtr& config, const Cache& cache);

    void _refreshVisibleFriendvalins();

    const Layout _layout;
    const QXSDKKovalinStickerPickerConfigPtr _config;
    const std::shared_ptr<kovalin::platform::CollectionView> _view;
    QXSDKCollectionViewUpdater<KovalinSticker> _viewUpdater;
    kovalin::platform::WeakSet<QXSDKKovalinStickerCollectionViewCell> _failedCells; // whose last load failed
    bool _isFirstStickerRendered = false;
    std::optional<QString> _friendAvatarId;
    std::weak_ptr<QXSDKKovalinStickerGridControllerDelegate> _delegate;
    int _topInset = 0;
};
