#include "picker/status/StatusBlock.h"

#include "kits/core/QXSDKFont.h"
#include "picker/config/KovalinImage.h"
#include "picker/config/KovalinString.h"
#include "picker/config/QXSDKKovalinStickerPickerTheme.h"
#include "picker/views/KovalinViewHelpers.h"
#include "platform/ui/QuickComponents.h"

#include <algorithm>
#include <utility>

using namespace kovalin::platform;

namespace {

// Points.
constexpr double textSpacing = 10; // between the button and the text below it
constexpr double overlap = 7.5;    // of the picture's feet and the button

} // namespace

StatusBlock::StatusBlock(const QXSDKKovalinStickerPickerTheme& theme, const QString& titleKey,
                         const QString& bottomTextKey)
{
    titleLabel->setFont(qxsdkBoldFontOfSize(systemFontSize));
    titleLabel->setTextColor(theme.titleTextColor());
    titleLabel->setTextAlignment(TextAlignment::Center);
    titleLabel->setNumberOfLines(0);
    titleLabel->setText(kovalinStringWithKey(titleKey));

    bottomLabel->setFont(qxsdkRegularFontOfSize(smallSystemFontSize));
    bottomLabel->setTextColor(theme.subtextColor());
    bottomLabel->setTextAlignment(TextAlignment::Center);
    bottomLabel->setNumberOfLines(1);
    bottomLabel->setText(kovalinStringWithKey(bottomTextKey));

    QuickComponents::shared().setAccessibleIgnored(*kovalinGraphic);
}

QRectF StatusBlock::placeIn(const View& view)
{
    const QSizeF size = view.frame().size();
    const double width = std::min(size.width(), maxWidth);
    return {(size.width() - width) / 2, (size.height() - obscuredAreaInsets(view).bottom() - height) / 2, width,
            height};
}

void StatusBlock::drawGraphic(double pixelRatio)
{
    if (std::exchange(_drawnFor, pixelRatio) == pixelRatio) {
        return;
    }
    const VectorImage picture = kovalinImageNamed(QStringLiteral("linkButtonGraphic"));
    kovalinGraphic->setImage(picture.image(picture.size(), pixelRatio));
}

double StatusBlock::layOutTexts(const QRectF& place) const
{
    const double titleHeight = titleLabel->sizeThatFits(place.size()).height();
    const double bottomHeight = bottomLabel->sizeThatFits(place.size()).height();
    titleLabel->setFrame({place.x(), place.y(), place.width(), titleHeight});
    bottomLabel->setFrame({place.x(), place.bottom() - bottomHeight, place.width(), bottomHeight});
    return bottomLabel->frame().top() - textSpacing;
}

void StatusBlock::standGraphicOn(const QRectF& button, double viewWidth) const
{
    kovalinGraphic->sizeToFit();
    const QSizeF size = kovalinGraphic->frame().size();
    kovalinGraphic->setFrame(
        QRectF(QPointF((viewWidth - size.width()) / 2, button.top() + overlap - size.height()), size));
}
