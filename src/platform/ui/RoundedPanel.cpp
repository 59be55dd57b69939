#include "platform/ui/RoundedPanel.h"

#include <QtGui/QPainter>
#include <QtGui/QPen>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace kovalin::platform {

namespace {

/// Of each side's stretch: one pixel to be pulled, and one to either side of it that looks the same, for a filter that looks
/// at neighbours.
constexpr int stretchPixels = 3;
/// Three box blurs one after the other come close to a Gaussian one.
constexpr int boxBlurs = 3;
/// Above this a blur, and so a picture, would be larger than any shadow makes sense.
constexpr double maxBlurPixels = 128;

/// The side of the picture, in pixels, for a side of the panel.
int pictureSide(double panelPixels, int cornerPixels)
{
    return std::min(2 * cornerPixels + stretchPixels, std::max(static_cast<int>(std::lround(panelPixels)), 1));
}

PanelPicture::Stretch stretchOf(int side, int cornerPixels)
{
    if (side == 2 * cornerPixels + stretchPixels) {
        return {cornerPixels, side - cornerPixels};
    }
    return {side / 2, side / 2}; // as large as the panel: nothing to pull
}

int boxRadius(double blurPixels)
{
    // Of boxes 2r + 1 wide, three are as wide as a Gaussian one whose edge takes the radius to either side.
    return std::max(static_cast<int>(std::lround(blurPixels / boxBlurs)), 1);
}

/// Blurs one line of `count` numbers that lie `step` apart.
void blurLine(uchar* line, int count, qsizetype step, int radius, std::vector<uchar>& copy)
{
    for (int index = 0; index < count; ++index) {
        copy[static_cast<size_t>(index)] = line[index * step];
    }
    const auto at = [&](int index) {
        return index < 0 || index >= count ? 0 : int(copy[static_cast<size_t>(index)]);
    };
    int sum = 0;
    for (int index = -radius; index < radius; ++index) {
        sum += at(index);
    }
    const int width = 2 * radius + 1;
    for (int index = 0; index < count; ++index) {
        sum += at(index + radius);
        line[index * step] = static_cast<uchar>(sum / width);
        sum -= at(index - radius);
    }
}

QImage blurred(const QImage& image, double blurPixels, QRgb color)
{
    QImage alpha = image.convertToFormat(QImage::Format_Alpha8);
    const int radius = boxRadius(blurPixels);
    std::vector<uchar> copy(static_cast<size_t>(std::max(alpha.width(), alpha.height())));
    uchar* const bits = alpha.bits();
    const qsizetype stride = alpha.bytesPerLine();
    for (int pass = 0; pass < boxBlurs; ++pass) {
        for (int row = 0; row < alpha.height(); ++row) {
            blurLine(bits + row * stride, alpha.width(), 1, radius, copy);
        }
        for (int column = 0; column < alpha.width(); ++column) {
            blurLine(bits + column, alpha.height(), stride, radius, copy);
        }
    }
    QImage result(image.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(QColor::fromRgba(color));
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, alpha);
    return result;
}

double soundLength(double length)
{
    return std::isfinite(length) ? std::max(length, 0.0) : 0;
}

} // namespace

double blurMargin(const RoundedPanel& panel)
{
    if (panel.blurRadius <= 0) {
        return 0;
    }
    const double pixels = std::min(soundLength(panel.blurRadius) * panel.devicePixelRatio, maxBlurPixels);
    return boxBlurs * boxRadius(pixels) / panel.devicePixelRatio;
}

PanelPicture PanelPicture::of(const RoundedPanel& panel)
{
    const double ratio = panel.devicePixelRatio;
    const double margin = blurMargin(panel);
    const double radius =
        std::min({soundLength(panel.cornerRadius), panel.size.width() / 2, panel.size.height() / 2}) * ratio;
    const double border = soundLength(panel.borderWidth) * ratio;
    const int corner = static_cast<int>(std::ceil(std::max(radius, border) + 2 * margin * ratio));
    const QSize size(pictureSide((panel.size.width() + 2 * margin) * ratio, corner),
                     pictureSide((panel.size.height() + 2 * margin) * ratio, corner));
    const auto rgba = [](const QColor& color) {
        return color.isValid() ? color.rgba() : 0;
    };
    return {.key = {.size = size,
                    .cornerRadius = radius,
                    .borderWidth = border,
                    .blurRadius = std::min(soundLength(panel.blurRadius) * ratio, maxBlurPixels),
                    .color = rgba(panel.color),
                    .borderColor = border > 0 ? rgba(panel.borderColor) : 0},
            .horizontal = stretchOf(size.width(), corner),
            .vertical = stretchOf(size.height(), corner)};
}

QImage PanelPicture::image() const
{
    QImage image(key.size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double margin = key.blurRadius > 0 ? boxBlurs * boxRadius(key.blurRadius) : 0;
    const QRectF rect = QRectF(QPointF(), QSizeF(key.size)).adjusted(margin, margin, -margin, -margin);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgba(key.color));
    painter.drawRoundedRect(rect, key.cornerRadius, key.cornerRadius);
    if (key.borderWidth > 0 && qAlpha(key.borderColor) > 0) {
        const double inset = key.borderWidth / 2;
        const double radius = std::max(key.cornerRadius - inset, 0.0);
        QPen pen(QColor::fromRgba(key.borderColor), key.borderWidth);
        pen.setJoinStyle(Qt::MiterJoin);
        painter.setPen(pen);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius, radius);
    }
    painter.end();
    return key.blurRadius > 0 ? blurred(image, key.blurRadius, key.color) : image;
}

std::array<PanelPiece, 9> panelPieces(const PanelPicture& picture, const RoundedPanel& panel)
{
    struct Span {
        double source;
        double sourceLength;
        double target;
        double targetLength;
    };
    const double margin = blurMargin(panel);
    const auto spans = [&](int side, const PanelPicture::Stretch& stretch, double length) {
        const double whole = length + 2 * margin;
        // Without a stretch the picture's whole pixels may differ a little from the panel's size.
        const bool isPulled = stretch.end > stretch.begin;
        const double pixel = isPulled ? 1 / panel.devicePixelRatio : whole / side;
        const double begin = stretch.begin * pixel;
        const double end = whole - (side - stretch.end) * pixel;
        const double pulled = isPulled ? stretch.begin + 1 : stretch.begin;
        return std::array<Span, 3>{
            Span{0, double(stretch.begin), -margin, begin},
            Span{pulled, isPulled ? 1.0 : 0.0, begin - margin, isPulled ? end - begin : 0},
            Span{double(stretch.end), double(side - stretch.end), end - margin, whole - end},
        };
    };
    const auto columns = spans(picture.key.size.width(), picture.horizontal, panel.size.width());
    const auto rows = spans(picture.key.size.height(), picture.vertical, panel.size.height());

    std::array<PanelPiece, 9> pieces;
    for (size_t index = 0; index < pieces.size(); ++index) {
        const Span& column = columns[index % 3];
        const Span& row = rows[index / 3];
        if (column.targetLength > 0 && row.targetLength > 0) {
            pieces[index] = {QRectF(column.source, row.source, column.sourceLength, row.sourceLength),
                             QRectF(column.target, row.target, column.targetLength, row.targetLength)};
        }
    }
    return pieces;
}

} // namespace kovalin::platform
