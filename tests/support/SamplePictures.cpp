#include "support/SamplePictures.h"

#include <QtCore/QBuffer>
#include <QtCore/QList>
#include <QtCore/QRandomGenerator>

#include <algorithm>
#include <stdexcept>

namespace kovalin::test {

namespace {

QByteArray word(int value)
{
    return QByteArray(1, static_cast<char>(value & 0xFF)).append(static_cast<char>(value >> 8));
}

/// Pixels of one colour index in codes of eight bits each: the table is cleared before it needs longer ones.
QByteArray gifPixels(int count, char index)
{
    constexpr char clear = '\x80';
    constexpr char end = '\x81';
    constexpr int pixelsPerBlock = 100;
    QByteArray data(1, '\x07'); // bits of an index
    while (count > 0) {
        const int pixels = std::min(count, pixelsPerBlock);
        count -= pixels;
        QByteArray block(1, clear);
        block.append(pixels, index);
        if (count == 0) {
            block.append(end);
        }
        data.append(static_cast<char>(block.size()));
        data.append(block);
    }
    return data.append('\0');
}

} // namespace

QImage noise(quint32 seed, QSize size)
{
    QRandomGenerator random(seed);
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            image.setPixel(x, y, 0xFF000000U | random.generate());
        }
    }
    return image;
}

QImage plain(QColor colour, QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    return image;
}

QByteArray encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format)) {
        throw std::runtime_error("can't write a test's picture");
    }
    return bytes;
}

QByteArray gif(const QList<QColor>& frames, QSize size)
{
    QByteArray bytes = "GIF89a" + word(size.width()) + word(size.height());
    bytes.append('\xF6').append('\0').append('\0'); // 128 colours
    QByteArray colours(qsizetype(3) * 128, '\0');
    for (qsizetype i = 0; i < frames.size(); ++i) {
        colours[3 * i] = static_cast<char>(frames[i].red());
        colours[3 * i + 1] = static_cast<char>(frames[i].green());
        colours[3 * i + 2] = static_cast<char>(frames[i].blue());
    }
    bytes.append(colours);
    for (qsizetype i = 0; i < frames.size(); ++i) {
        bytes.append("!\xF9\x04", 3).append('\0').append(word(10)).append('\0').append('\0'); // 0.1 s
        bytes.append(',').append(word(0)).append(word(0)).append(word(size.width())).append(word(size.height()));
        bytes.append('\0').append(gifPixels(size.width() * size.height(), static_cast<char>(i)));
    }
    return bytes.append(';');
}

QByteArray losslessWebP()
{
    return QByteArray::fromBase64("UklGRhoAAABXRUJQVlA4TA0AAAAvAAAAEAcQERGIiP4HAA==");
}

QByteArray lossyWebP()
{
    return QByteArray::fromBase64("UklGRiIAAABXRUJQVlA4IBYAAAAwAQCdASoBAAEADsD+JaQAA3AAAAAA");
}

QByteArray svg(const char* colour)
{
    return svgWith(QByteArray("<rect width=\"16\" height=\"16\" fill=\"") + colour + "\"/>");
}

QByteArray svgWith(const QByteArray& content)
{
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
           "width=\"16\" height=\"16\">" +
           content + "</svg>";
}

} // namespace kovalin::test
