#include "support/SampleStickers.h"

#include <QtGui/QPainter>

namespace kovalin::test {

QImage sampleSticker(int number)
{
    constexpr int side = 256;   // pixels
    constexpr int hueStep = 83; // degrees; far from a part of a circle, so that neighbours differ
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const auto ellipse = [&painter](const QColor& color, const QRectF& place) {
        painter.setBrush(color);
        painter.drawEllipse(place);
    };
    const QColor shirt = QColor::fromHsv(number * hueStep % 360, 190, 220);
    painter.setBrush(shirt);
    painter.drawRoundedRect(QRectF(52, 150, 152, 106), 40, 40);
    ellipse(QColor(0xF6, 0xC9, 0xA0), {68, 28, 120, 130});
    ellipse(Qt::black, {98, 76, 14, 18});
    ellipse(Qt::black, {144, 76, 14, 18});
    painter.setBrush(shirt.darker());
    painter.drawChord(QRectF(68, 24, 120, 110), 20 * 16, 140 * 16);
    painter.drawChord(QRectF(104, 96, 48, 40), 180 * 16, 180 * 16);
    return picture;
}

} // namespace kovalin::test
