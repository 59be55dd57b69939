#include "kovalin-backend/drawing/StickerDrawing.h"

#include "apps/drawing/ExampleContent.h"
#include "kovalin-backend/drawing/PngFile.h"

#include <gtest/gtest.h>

#include <future>
#include <vector>

using namespace kovalin::drawing;
using example_content::templates;

namespace {

const QString ada = QStringLiteral("ada");
const QString grace = QStringLiteral("grace");

const StickerTemplate& sticker(const QString& id)
{
    const StickerTemplate* const found = templates().find(id);
    if (!found) {
        throw std::runtime_error("no template " + id.toStdString());
    }
    return *found;
}

/// How many pixels look different.
int differingPixels(const QImage& one, const QImage& other)
{
    constexpr int visible = 40; // of 1020, the sum over the four parts
    const auto* const first = reinterpret_cast<const QRgb*>(one.constBits());
    const auto* const second = reinterpret_cast<const QRgb*>(other.constBits());
    int count = 0;
    for (int i = 0; i < one.width() * one.height(); ++i) {
        if (first[i] == second[i]) {
            continue;
        }
        const int distance = qAbs(qAlpha(first[i]) - qAlpha(second[i])) + qAbs(qRed(first[i]) - qRed(second[i])) +
                             qAbs(qGreen(first[i]) - qGreen(second[i])) + qAbs(qBlue(first[i]) - qBlue(second[i]));
        count += distance > visible ? 1 : 0;
    }
    return count;
}

/// The first pixel at the picture's borders that isn't transparent; empty when there is none.
std::string markAtBorder(const QImage& image)
{
    const int last = image.width() - 1;
    for (int i = 0; i <= last; ++i) {
        for (const QPoint& point : {QPoint(i, 0), QPoint(i, last), QPoint(0, i), QPoint(last, i)}) {
            if (qAlpha(image.pixel(point)) != 0) {
                return std::to_string(point.x()) + "," + std::to_string(point.y());
            }
        }
    }
    return "";
}

TEST(StickerDrawing, GivesTheSameBytesAgain)
{
    for (const QString& id : {QStringLiteral("happy-birthday"), QStringLiteral("big-hug"), QStringLiteral("dance")}) {
        const auto first = stickerPng(templates(), id, ada, grace);
        ASSERT_TRUE(first) << id.toStdString();
        EXPECT_EQ(first, stickerPng(templates(), id, ada, grace));
    }
}

TEST(StickerDrawing, GivesTheSameBytesOnAnyThread)
{
    const auto drawSome = [] {
        std::vector<QByteArray> files;
        for (std::size_t i = 0; i < templates().all().size(); i += 9) {
            files.push_back(stickerPng(templates(), templates().all()[i].id, ada, grace, 160).value());
        }
        return files;
    };
    auto one = std::async(std::launch::async, drawSome);
    auto other = std::async(std::launch::async, drawSome);
    const std::vector<QByteArray> here = drawSome();
    EXPECT_EQ(one.get(), here);
    EXPECT_EQ(other.get(), here);
}

TEST(StickerDrawing, IsAPngOfTheWantedSize)
{
    const auto file = stickerPng(templates(), QStringLiteral("wow"), ada);
    ASSERT_TRUE(file);
    EXPECT_TRUE(file->startsWith("\x89PNG"));
    EXPECT_EQ(QImage::fromData(*file).size(), QSize(320, 320));
    EXPECT_TRUE(QImage::fromData(*file).hasAlphaChannel());
    EXPECT_EQ(drawSticker(sticker(QStringLiteral("wow")), ada, {}, 16).width(), 16);
    EXPECT_EQ(drawSticker(sticker(QStringLiteral("wow")), ada, {}, 1024).width(), 1024);
}

TEST(StickerDrawing, KeepsSizesInRange)
{
    EXPECT_EQ(drawSticker(sticker(QStringLiteral("wow")), ada, {}, -5).width(), smallestSize);
    EXPECT_EQ(drawSticker(sticker(QStringLiteral("wow")), ada, {}, 1 << 30).width(), largestSize);
}

TEST(StickerDrawing, HasNothingForAnUnknownTemplate)
{
    EXPECT_EQ(stickerPng(templates(), QStringLiteral("no-such-template"), ada), std::nullopt);
    EXPECT_EQ(stickerPng(templates(), QString(), ada), std::nullopt);
    EXPECT_EQ(stickerPng(StickerTemplates(), QStringLiteral("wow"), ada), std::nullopt);
}

TEST(StickerDrawing, ShowsWhoIsOnIt)
{
    const StickerTemplate& alone = sticker(QStringLiteral("love-you"));
    EXPECT_GT(differingPixels(drawSticker(alone, ada), drawSticker(alone, grace)), 2000);
    EXPECT_EQ(drawSticker(alone, ada, grace), drawSticker(alone, ada)); // a friend is for stickers for two
}

TEST(StickerDrawing, ShowsTheFriend)
{
    const StickerTemplate& both = sticker(QStringLiteral("best-friends"));
    const QImage picture = drawSticker(both, ada, grace);
    EXPECT_GT(differingPixels(picture, drawSticker(both, ada, QStringLiteral("alan"))), 2000);
    EXPECT_GT(differingPixels(picture, drawSticker(both, grace, ada)), 2000);
    EXPECT_EQ(drawSticker(both, ada), drawSticker(both, ada, QString()));
}

TEST(ExampleStickers, AreAllUnlike)
{
    constexpr int size = 96;
    constexpr int leastDifference = size * size / 12; // pixels
    std::vector<QImage> pictures;
    for (const StickerTemplate& each : templates().all()) {
        pictures.push_back(drawSticker(each, ada, grace, size).convertToFormat(QImage::Format_ARGB32));
    }
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        for (std::size_t j = i + 1; j < pictures.size(); ++j) {
            EXPECT_GE(differingPixels(pictures[i], pictures[j]), leastDifference)
                << templates().all()[i].id.toStdString() << " and " << templates().all()[j].id.toStdString();
        }
    }
}

class ExampleStickersOf : public testing::TestWithParam<const char*> {};

TEST_P(ExampleStickersOf, StandFreeAndAreSmall)
{
    const QString avatar = QString::fromUtf8(GetParam());
    for (const StickerTemplate& each : templates().all()) {
        const QImage picture = drawSticker(each, avatar, QStringLiteral("friend of %1").arg(avatar));
        EXPECT_EQ(markAtBorder(picture), "") << each.id.toStdString();
        EXPECT_GT(qAlpha(picture.pixel(160, 160)), 0) << each.id.toStdString();
        EXPECT_LT(encodedAsPng(picture).size(), 40 * 1024) << each.id.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Avatars, ExampleStickersOf, testing::Values("", "ada", "9", "../?%s", "\xF0\x9F\x98\x80"));

TEST(PngFile, KeepsFewColoursExactly)
{
    QImage image(8, 8, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    image.setPixelColor(1, 1, QColor(1, 2, 3, 77));
    image.setPixelColor(2, 1, QColor(255, 254, 253));
    const QImage back = QImage::fromData(encodedAsPng(image)).convertToFormat(QImage::Format_ARGB32);
    EXPECT_EQ(back, image);
}

TEST(PngFile, StaysCloseWithManyColours)
{
    QImage image(256, 256, QImage::Format_ARGB32);
    for (int y = 0; y < 256; ++y) {
        for (int x = 0; x < 256; ++x) {
            image.setPixel(x, y, qRgba(x, y, 128, 255));
        }
    }
    const QImage back = QImage::fromData(encodedAsPng(image)).convertToFormat(QImage::Format_ARGB32);
    ASSERT_EQ(back.size(), image.size());
    for (const QPoint& point : {QPoint(0, 0), QPoint(100, 30), QPoint(255, 255)}) {
        EXPECT_NEAR(qRed(back.pixel(point)), qRed(image.pixel(point)), 24);
        EXPECT_NEAR(qGreen(back.pixel(point)), qGreen(image.pixel(point)), 24);
    }
}

} // namespace
