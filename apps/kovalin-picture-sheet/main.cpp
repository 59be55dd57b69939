// kovalin-picture-sheet: the library's own pictures at the pixel ratios 1, 2 and 3, in the light and the dark theme, to look at.

#include "picker/config/KovalinColors.h"
#include "picker/config/KovalinImage.h"
#include "picker/config/QXSDKKovalinStickerPickerTheme.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>

namespace {

using kovalin::platform::VectorImage;

constexpr int kGap = 16; // pixels around each picture
constexpr int kRatios[] = {1, 2, 3};
constexpr int kMagnification = 3; // of the picture at ratio 1, pixel by pixel
constexpr qreal kButtonHeight = 48;
constexpr qreal kGraphicsOverlap = 7.5; // points by which the graphic reaches over the button that it stands on

/// The colour that the views give to a picture in template mode; absent for those that are shown in their own.
std::optional<QColor> tintOf(const QString& name, const QXSDKKovalinStickerPickerTheme& theme)
{
    if (name == u"search") {
        return theme.searchColor();
    }
    if (name == u"search-back" || name == u"search-clear") {
        return theme.navIconColor();
    }
    if (name == u"loading") {
        return theme.titleTextColor();
    }
    return std::nullopt;
}

/// What a view shows of a picture at a pixel ratio.
QImage drawn(const QString& name, const QXSDKKovalinStickerPickerTheme& theme, qreal ratio)
{
    const VectorImage picture = kovalinImageNamed(name);
    const auto tint = tintOf(name, theme);
    QImage image =
        tint ? picture.asTemplate().image(picture.size(), ratio, *tint) : picture.image(picture.size(), ratio);
    image.setDevicePixelRatio(1); // The sheet shows its pixels.
    return image;
}

int rowHeight(const QString& name)
{
    const int stand = name == u"linkButtonGraphic" ? kMagnification * static_cast<int>(kButtonHeight) : 0;
    return static_cast<int>(kovalinImageNamed(name).size().height()) * kMagnification + stand + kGap;
}

QSize halfSize()
{
    int width = 0;
    int height = kGap;
    for (const QString& name : kovalinImageNames()) {
        const int points = static_cast<int>(kovalinImageNamed(name).size().width());
        width = std::max(width, kGap + points * (1 + 2 + 3 + kMagnification) + 4 * kGap);
        height += rowHeight(name);
    }
    return {width, height};
}

void drawPicture(QPainter& painter, const QPoint& at, const QString& name, const QXSDKKovalinStickerPickerTheme& theme,
                 int ratio, int magnification)
{
    const QImage image = drawn(name, theme, ratio);
    const QRect frame(at, image.size() * magnification);
    if (name == u"linkButtonGraphic") {
        const qreal scale = ratio * magnification;
        const QRectF button(frame.x(), frame.bottom() + 1 - kGraphicsOverlap * scale, frame.width(),
                            kButtonHeight * scale);
        painter.setPen(Qt::NoPen);
        painter.setBrush(kovalinGreen());
        painter.drawRoundedRect(button, button.height() / 2, button.height() / 2);
    }
    painter.drawImage(frame, image);
}

void drawHalf(QPainter& painter, int top, const QXSDKKovalinStickerPickerTheme& theme)
{
    int y = top + kGap;
    for (const QString& name : kovalinImageNames()) {
        const int points = static_cast<int>(kovalinImageNamed(name).size().width());
        int x = kGap;
        for (const int ratio : kRatios) {
            drawPicture(painter, {x, y}, name, theme, ratio, 1);
            x += points * ratio + kGap;
        }
        drawPicture(painter, {x, y}, name, theme, 1, kMagnification);
        y += rowHeight(name);
    }
}

QImage sheet()
{
    const auto light = QXSDKKovalinStickerPickerTheme::lightTheme();
    const auto dark = QXSDKKovalinStickerPickerTheme::darkTheme();
    const QSize half = halfSize();
    QImage image(half.width(), 2 * half.height(), QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(0, 0, half.width(), half.height(), light->backgroundColor());
    painter.fillRect(0, half.height(), half.width(), half.height(), dark->backgroundColor());
    drawHalf(painter, 0, *light);
    drawHalf(painter, half.height(), *dark);
    return image;
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QGuiApplication application(argc, argv);
    std::string out;
    CLI::App app("The library's pictures at the pixel ratios 1, 2 and 3, and the first magnified, in both themes.",
                 "kovalin-picture-sheet");
    app.add_option("OUT", out, "Where the sheet goes, a PNG file")->required();
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    if (!sheet().save(QString::fromStdString(out), "PNG")) {
        std::fprintf(stderr, "%s: can't be written\n", out.c_str());
        return 1;
    }
    return 0;
}
