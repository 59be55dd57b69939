#include "platform/store/DecodeImage.h"

#include "platform/store/StoreTesting.h"

#include <QtGui/QImageReader>

#include <gtest/gtest.h>

namespace kovalin::platform {
namespace {

using test::encoded;
using test::gif;
using test::isSame;
using test::noise;
using test::plain;

/// With the plugin missing, which Debian packages apart, there is nothing to be shown.
bool canRead(const char* format)
{
    return QImageReader::supportedImageFormats().contains(format);
}

QString problemOf(const QByteArray& bytes)
{
    QString problem;
    EXPECT_TRUE(decodeImage(bytes, &problem).isNull());
    EXPECT_FALSE(problem.isEmpty());
    return problem;
}

/// Of the bytes from `start` to `end`, as a PNG's parts end with it.
quint32 checksumOf(const QByteArray& bytes, qsizetype start, qsizetype end)
{
    quint32 sum = 0xFFFFFFFF;
    for (qsizetype at = start; at < end; ++at) {
        sum ^= static_cast<quint8>(bytes[at]);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return ~sum;
}

/// A PNG of 16 × 16 pixels with another size in its header.
QByteArray pngThatClaims(quint32 width, quint32 height)
{
    QByteArray bytes = encoded(plain(Qt::red));
    const auto write = [&bytes](qsizetype at, quint32 number) {
        for (int i = 0; i < 4; ++i) {
            bytes[at + i] = static_cast<char>(number >> (24 - 8 * i));
        }
    };
    write(16, width);
    write(20, height);
    write(29, checksumOf(bytes, 12, 29));
    return bytes;
}

TEST(DecodeImage, DecodesPng)
{
    EXPECT_TRUE(isSame(decodeImage(encoded(noise(1))), noise(1)));
    const QImage transparent = plain(QColor(10, 200, 30, 128));
    EXPECT_TRUE(isSame(decodeImage(encoded(transparent)), transparent));
}

TEST(DecodeImage, DecodesJpeg)
{
    const QByteArray bytes = encoded(noise(1, QSize(40, 30)), "jpeg");
    EXPECT_TRUE(isSame(decodeImage(bytes), QImage::fromData(bytes)));
}

TEST(DecodeImage, DecodesTheFirstFrameOfAGif)
{
    const QImage image = decodeImage(gif({Qt::red, Qt::blue}));
    ASSERT_EQ(image.size(), QSize(16, 16));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(15, 15), QColor(Qt::red));
}

TEST(DecodeImage, DecodesSvg)
{
    if (!canRead("svg")) {
        GTEST_SKIP() << "the SVG plugin isn't installed";
    }
    const QImage image = decodeImage(test::svg("#00ff00"));
    ASSERT_EQ(image.size(), QSize(16, 16));
    EXPECT_EQ(image.pixelColor(8, 8), QColor(0, 255, 0));
    EXPECT_FALSE(decodeImage("\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- drawn -->\n" + test::svg("red")).isNull());
}

TEST(DecodeImage, DecodesWebP)
{
    if (!canRead("webp")) {
        GTEST_SKIP() << "the WebP plugin isn't installed";
    }
    EXPECT_EQ(decodeImage(test::losslessWebP()).size(), QSize(1, 1));
    EXPECT_EQ(decodeImage(test::lossyWebP()).size(), QSize(1, 1));
}

TEST(DecodeImage, SaysSoWhereAPluginIsMissing)
{
    if (canRead("webp")) {
        GTEST_SKIP() << "the WebP plugin is installed";
    }
    EXPECT_TRUE(problemOf(test::losslessWebP()).contains(QStringLiteral("(webp)")));
}

TEST(DecodeImage, GivesWhatDrawsWithoutConversion)
{
    EXPECT_EQ(decodeImage(encoded(plain(QColor(1, 2, 3, 4)))).format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(decodeImage(encoded(noise(1), "jpeg")).format(), QImage::Format_RGB32);
    EXPECT_EQ(decodeImage(encoded(noise(1).convertToFormat(QImage::Format_Mono))).format(), QImage::Format_RGB32);
    EXPECT_EQ(decodeImage(encoded(noise(1).convertToFormat(QImage::Format_RGBA64))).depth(), 32);
}

TEST(DecodeImage, RefusesMoreThanSixteenMegapixelsByTheirHeader)
{
    EXPECT_TRUE(problemOf(pngThatClaims(4001, 4000)).contains(QStringLiteral("4001 × 4000 pixels")));
    EXPECT_TRUE(problemOf(pngThatClaims(65'535, 65'535)).contains(QStringLiteral("claims")));
    EXPECT_TRUE(decodeImage(pngThatClaims(0x7FFFFFFF, 1)).isNull());
    EXPECT_TRUE(decodeImage(pngThatClaims(0x7FFFFFFF, 0x7FFFFFFF)).isNull());
    // Not for its size: it is its content that is missing.
    EXPECT_FALSE(problemOf(pngThatClaims(4000, 4000)).contains(QStringLiteral("claims")));

    QByteArray wide = gif({Qt::red});
    wide.replace(6, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_TRUE(decodeImage(wide).isNull());
    if (canRead("svg")) {
        QByteArray large = test::svg("red");
        large.replace("width=\"16\" height=\"16\">", "width=\"4001\" height=\"4000\">");
        EXPECT_TRUE(problemOf(large).contains(QStringLiteral("claims")));
    }
}

TEST(DecodeImage, DecodesSixteenMegapixels)
{
    QImage image(4000, 4000, QImage::Format_Mono);
    image.fill(0);
    EXPECT_EQ(decodeImage(encoded(image)).size(), image.size());
}

TEST(DecodeImage, DrawsNoMoreOfAGifThanItSays)
{
    QByteArray bytes = gif({Qt::red});
    const auto frame = bytes.indexOf(QByteArray(",\0\0\0\0", 5));
    ASSERT_GT(frame, 0);
    bytes.replace(frame + 5, 4, "\xFF\xFF\xFF\x7F"); // 65 535 × 32 767
    EXPECT_EQ(decodeImage(bytes).size(), QSize(16, 16));
}

TEST(DecodeImage, RefusesWhatIsNoPicture)
{
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("x"), QByteArray("{\"error\":404}"), QByteArray(100, '\0'), QByteArray("RIFF"),
          QByteArray("BM picture of a kind not shown"), QByteArray("\x1F\x8B packed"), QByteArray("\xFF\xD8")}) {
        EXPECT_TRUE(problemOf(bytes).contains(QStringLiteral("no known format"))) << bytes.toStdString();
    }
    EXPECT_FALSE(problemOf("<html><body>404</body></html>").isEmpty());
}

TEST(DecodeImage, NamesFormatAndSizeOfWhatItRefuses)
{
    EXPECT_TRUE(problemOf("GIF89a").startsWith(QStringLiteral("A picture of 6 bytes (gif) can't be shown: ")));
}

} // namespace
} // namespace kovalin::platform
