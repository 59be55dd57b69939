#include "platform/store/EncodedImageCheck.h"

namespace kovalin::platform {

namespace {

// After the last begin of a scan there has to be an end of image. Neither marker can stand among the data of a scan; one that
// ends a preview picture stands before it.
bool isWholeJpeg(const QByteArray& bytes)
{
    constexpr char startOfScan[] = "\xFF\xDA";
    constexpr char endOfImage[] = "\xFF\xD9";
    return bytes.lastIndexOf(endOfImage) > bytes.lastIndexOf(startOfScan);
}

/// Walks through the blocks of a GIF. A read behind the end gives 0 and makes `isBeyondEnd` true.
class GifWalk final {
public:
    explicit GifWalk(const QByteArray& bytes)
        : _bytes(bytes)
    {
    }

    [[nodiscard]] bool isBeyondEnd() const { return _at > _bytes.size(); }
    void skip(qsizetype count) { _at += count; }

    quint8 byte()
    {
        const qsizetype at = _at++;
        return at < _bytes.size() ? static_cast<quint8>(_bytes[at]) : quint8(0);
    }

    void skipColours(quint8 flags)
    {
        if ((flags & 0x80) != 0) {
            skip(qsizetype(3) << ((flags & 0x07) + 1));
        }
    }

    /// Up to and with the empty one that ends them.
    void skipSubBlocks()
    {
        while (const quint8 size = byte()) {
            skip(size);
        }
    }

private:
    const QByteArray& _bytes;
    qsizetype _at = 0;
};

bool hasWholeGifFrame(const QByteArray& bytes)
{
    constexpr quint8 extension = 0x21;
    constexpr quint8 frame = 0x2C;

    GifWalk walk(bytes);
    walk.skip(10); // signature and size
    const quint8 flags = walk.byte();
    walk.skip(2); // background and aspect ratio
    walk.skipColours(flags);
    while (!walk.isBeyondEnd()) {
        switch (walk.byte()) {
        case extension:
            walk.skip(1); // its kind
            walk.skipSubBlocks();
            break;
        case frame:
            walk.skip(8); // place and size
            walk.skipColours(walk.byte());
            walk.skip(1); // bits a code
            walk.skipSubBlocks();
            return !walk.isBeyondEnd();
        default:
            return false;
        }
    }
    return false;
}

bool isXml(const QByteArray& bytes)
{
    const QByteArray start = bytes.first(qMin<qsizetype>(bytes.size(), 64));
    return (start.startsWith("\xEF\xBB\xBF") ? start.sliced(3) : start).trimmed().startsWith('<');
}

} // namespace

const char* nameOf(ImageFormat format)
{
    switch (format) {
    case ImageFormat::Png:
        return "png";
    case ImageFormat::Jpeg:
        return "jpeg";
    case ImageFormat::Gif:
        return "gif";
    case ImageFormat::WebP:
        return "webp";
    case ImageFormat::Svg:
        return "svg";
    }
    return "";
}

std::optional<ImageFormat> imageFormatOf(const QByteArray& bytes)
{
    if (bytes.startsWith("\x89PNG\r\n\x1A\n")) {
        return ImageFormat::Png;
    }
    if (bytes.startsWith("\xFF\xD8\xFF")) {
        return ImageFormat::Jpeg;
    }
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a")) {
        return ImageFormat::Gif;
    }
    if (bytes.startsWith("RIFF") && bytes.sliced(4).indexOf("WEBP") == 4) {
        return ImageFormat::WebP;
    }
    if (isXml(bytes)) {
        return ImageFormat::Svg;
    }
    return std::nullopt;
}

bool isWhole(const QByteArray& bytes, ImageFormat format)
{
    switch (format) {
    case ImageFormat::Jpeg:
        return isWholeJpeg(bytes);
    case ImageFormat::Gif:
        return hasWholeGifFrame(bytes);
    default:
        return true;
    }
}

} // namespace kovalin::platform
