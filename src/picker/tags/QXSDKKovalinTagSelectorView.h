#pragma once

#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/grid/QXSDKCollectionViewUpdater.h"
#include "picker/tags/QXSDKTagTile.h"
#include "platform/ui/CollectionView.h"
#include "platform/ui/View.h"

#include <QtCore/QRectF>
#include <QtCore/QString>

#include <memory>

/// Told which pill of a strip was chosen. Called on the main thread; may do anything, such as letting go of the strip.
class QXSDKKovalinTagSelectorViewDelegate {
public:
    QXSDKKovalinTagSelectorViewDelegate() = default;
    virtual ~QXSDKKovalinTagSelectorViewDelegate();
    Q_DISABLE_COPY_MOVE(QXSDKKovalinTagSelectorViewDelegate)

    virtual void kovalinTagSelectorViewDidSelectTag(const QXSDKTagTilePtr& tagTile) = 0;
};

/// A strip of pills that scrolls sideways, or a text where there are none. It begins where reading does. Thread and
/// lifetime as of `View`.
///
/// Keys walk from pill to pill and choose one, and assistive tools see a list of the tags.
class QXSDKKovalinTagSelectorView final : public kovalin::platform::View,
                                          public kovalin::platform::CollectionViewDataSource,
                                          public kovalin::platform::CollectionViewDelegate {
    Q_OBJECT

public:
    /// A list whose identity counts.
    using List = QXSDKCollectionViewUpdater<QXSDKTagTile>::List;

    /// A strip without pills, which doesn't say so yet. Takes the colours of the configuration's theme, or of the default
    /// one if that is null.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinTagSelectorView>
    create(const QRectF& frame, const QXSDKKovalinStickerPickerConfigPtr& config);
    ~QXSDKKovalinTagSelectorView() override;

    /// Held weakly.
    void setDelegate(const std::weak_ptr<QXSDKKovalinTagSelectorViewDelegate>& delegate);

    /// What is shown, or what the animation under way leads to; never null.
    [[nodiscard]] List tagTiles() const;
    /// Scrolls to the beginning and plays the change. Null is an empty list.
    void setTagTiles(const List& tagTiles);

    void layoutSubviews() override;

    // For the collection view.

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

private:
    struct State;

    QXSDKKovalinTagSelectorView(const QRectF& frame, const QXSDKKovalinStickerPickerConfigPtr& config);

    const std::unique_ptr<State> _strip;
};
