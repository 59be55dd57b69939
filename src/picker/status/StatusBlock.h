#pragma once

#include "platform/ui/ImageView.h"
#include "platform/ui/Label.h"

#include <QtCore/QString>

#include <memory>

class QXSDKKovalinStickerPickerTheme;

/// What the login view and the create avatar view have in common: a block in their middle with a title at its top, a
/// line of text at its foot, and a picture that stands on the button between them. Main thread only.
class StatusBlock final {
public:
    /// No wider than this, and just as high, in points.
    static constexpr double maxWidth = 250;
    static constexpr double height = 220;

    StatusBlock(const QXSDKKovalinStickerPickerTheme& theme, const QString& titleKey, const QString& bottomTextKey);

    /// The block's place in the view, above what the device covers at its bottom.
    [[nodiscard]] static QRectF placeIn(const kovalin::platform::View& view);

    /// Draws the picture for windows of the ratio; nothing where it is drawn for that already.
    void drawGraphic(double pixelRatio);
    /// Places both texts in the block, and returns where the button's bottom is.
    double layOutTexts(const QRectF& place) const;
    /// Stands the picture on a button that is in its place.
    void standGraphicOn(const QRectF& button, double viewWidth) const;

    const std::shared_ptr<kovalin::platform::Label> titleLabel =
        kovalin::platform::makeView<kovalin::platform::Label>();
    const std::shared_ptr<kovalin::platform::Label> bottomLabel =
        kovalin::platform::makeView<kovalin::platform::Label>();
    const std::shared_ptr<kovalin::platform::ImageView> kovalinGraphic =
        kovalin::platform::makeView<kovalin::platform::ImageView>();

private:
    double _drawnFor = 0; // before it is drawn
};
