#include "platform/store/DecodeImage.h"

#include "platform/store/EncodedImageCheck.h"
#include "platform/store/SvgCheck.h"

#include <QtCore/QBuffer>
#include <QtGui/QGuiApplication>
#include <QtGui/QImageReader>

#include <optional>

namespace kovalin::platform {

namespace {

constexpr qint64 kMaxPixels = 16'000'000;

// A picture of that size is far smaller in each format, and decoding takes time for each byte.
constexpr qsizetype kMaxBytes = qsizetype(32) * 1024 * 1024;

bool isTooLarge(const QSize& size)
{
    return qint64(size.width()) * size.height() > kMaxPixels;
}

QString textOf(const QSize& size)
{
    return QStringLiteral("%1 × %2 pixels").arg(size.width()).arg(size.height());
}

/// What is wrong with the bytes as they are; absent if they are worth decoding.
std::optional<QString> defectOf(const QByteArray& bytes, ImageFormat format)
{
    if (bytes.size() > kMaxBytes) {
        return QStringLiteral("it is larger than any picture shown");
    }
    if (!isWhole(bytes, format)) {
        return QStringLiteral("it is cut off");
    }
    if (format == ImageFormat::Svg) {
        if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr) {
            return QStringLiteral("text can't be drawn without a QGuiApplication"); // Qt would end the program.
        }
        return defectOfSvg(bytes);
    }
    return std::nullopt;
}

/// The picture, or null and why.
QImage read(const QByteArray& bytes, ImageFormat format, QString& defect)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    // No other reader is tried: a host may have plugins for whatever.
    QImageReader reader(&buffer, nameOf(format));
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);

    // All these formats tell their size ahead, so Qt's own limit of what a picture may allocate, which is one for the whole
    // process, is left to the host.
    const QSize size = reader.size();
    if (size.isEmpty()) {
        defect = reader.canRead() ? QStringLiteral("it has no size") : reader.errorString();
        return {};
    }
    if (isTooLarge(size)) {
        defect = QStringLiteral("it claims %1").arg(textOf(size));
        return {};
    }
    QImage image = reader.read();
    if (image.isNull()) {
        defect = reader.errorString();
    } else if (isTooLarge(image.size())) { // The frame of a GIF may be larger than the screen it is for.
        defect = QStringLiteral("it has %1").arg(textOf(image.size()));
        image = {};
    }
    return image;
}

} // namespace

QImage decodeImage(const QByteArray& bytes, QString* problem)
{
    QImage image;
    QString defect;
    const std::optional<ImageFormat> format = imageFormatOf(bytes);
    if (!format) {
        defect = QStringLiteral("it is of no known format");
    } else if (const auto known = defectOf(bytes, *format)) {
        defect = *known;
    } else {
        image = read(bytes, *format, defect);
    }
    if (!image.isNull()) {
        image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    } else if (problem != nullptr) {
        *problem = QStringLiteral("A picture of %1 bytes%2 can't be shown: %3")
                       .arg(QString::number(bytes.size()),
                            format ? QStringLiteral(" (%1)").arg(QLatin1String(nameOf(*format))) : QString(), defect);
    }
    return image;
}

} // namespace kovalin::platform
