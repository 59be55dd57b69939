#include "picker/config/KovalinImage.h"

#include "support/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace {

using kovalin::platform::VectorImage;

/// A picture as the views expect it.
struct Picture {
    const char* name;
    QSizeF size;             // points
    std::optional<QRgb> ink; // of those in one colour, opaque
};

void PrintTo(const Picture& picture, std::ostream* stream)
{
    *stream << picture.name;
}

std::vector<Picture> pictures()
{
    return {
        {"kovalin-icon", {40, 40}, std::nullopt},  {"linkButtonGraphic", {200, 110}, std::nullopt},
        {"loading", {80, 80}, qRgb(0, 0, 0)},      {"retry", {24, 24}, qRgb(0x85, 0x8E, 0x98)},
        {"search", {24, 24}, qRgb(0, 0, 0)},       {"search-back", {24, 24}, qRgb(0, 0, 0)},
        {"search-clear", {24, 24}, qRgb(0, 0, 0)},
    };
}

constexpr qreal kRatios[] = {1, 1.5, 2, 3};

int countOf(const QImage& image, bool (*counts)(int alpha))
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += counts(qAlpha(image.pixel(x, y))) ? 1 : 0;
        }
    }
    return count;
}

int clearPixels(const QImage& image)
{
    return countOf(image, [](int alpha) { return alpha == 0; });
}

class Pictures : public testing::TestWithParam<Picture> {
protected:
    static VectorImage picture() { return kovalinImageNamed(QLatin1String(GetParam().name)); }
    static QImage at(qreal ratio) { return picture().image(picture().size(), ratio); }
};

TEST_P(Pictures, AreThereInTheirSizeAndColours)
{
    EXPECT_FALSE(picture().isNull());
    EXPECT_EQ(picture().size(), GetParam().size);
    EXPECT_FALSE(picture().isTemplate());
}

TEST_P(Pictures, HaveAPixelForEachOfTheWindows)
{
    for (const qreal ratio : kRatios) {
        const QImage image = at(ratio);
        EXPECT_EQ(image.size(), (GetParam().size * ratio).toSize());
        EXPECT_EQ(image.devicePixelRatio(), ratio);
        EXPECT_EQ(image.deviceIndependentSize(), GetParam().size);
    }
}

TEST_P(Pictures, FillTheirBoxAndAreNotCutOff)
{
    for (const qreal ratio : kRatios) {
        const QImage image = at(ratio);
        const QRect inner = image.rect().adjusted(1, 1, -1, -1);
        EXPECT_EQ(clearPixels(image) - clearPixels(image.copy(inner)),
                  image.width() * image.height() - inner.width() * inner.height())
            << "Something lies on the edge.";
        // No picture keeps more than a quarter of its box free on any side.
        const QSize margin = image.size() / 4;
        const QRect middle = image.rect().adjusted(margin.width(), margin.height(), -margin.width(), -margin.height());
        for (const QRect& side :
             {QRect(0, 0, image.width(), middle.top()), QRect(0, middle.bottom() + 1, image.width(), margin.height()),
              QRect(0, 0, middle.left(), image.height()),
              QRect(middle.right() + 1, 0, margin.width(), image.height())}) {
            EXPECT_LT(clearPixels(image.copy(side)), side.width() * side.height());
        }
    }
}

TEST_P(Pictures, AreDrawnAnewForEachRatio)
{
    // Edges are one pixel wide, so their pixels grow with the ratio; in a picture that was scaled up they would grow with its
    // square. What is half transparent by design is no edge: pixels are compared with their neighbours.
    const auto edges = [](const QImage& image) {
        int count = 0;
        for (int y = 1; y + 1 < image.height(); ++y) {
            for (int x = 1; x + 1 < image.width(); ++x) {
                const int left = qAlpha(image.pixel(x - 1, y));
                const int here = qAlpha(image.pixel(x, y));
                const int right = qAlpha(image.pixel(x + 1, y));
                count += left != here && here != right ? 1 : 0;
            }
        }
        return count;
    };
    const int once = edges(at(1));
    EXPECT_GT(once, 0);
    EXPECT_LT(edges(at(2)), 2.5 * once + 16);
    EXPECT_LT(edges(at(3)), 3.75 * once + 16);
    for (const auto mode : {Qt::FastTransformation, Qt::SmoothTransformation}) {
        EXPECT_NE(at(3), at(1).scaled(at(3).size(), Qt::IgnoreAspectRatio, mode));
    }
}

TEST_P(Pictures, OfOneColourHaveNoOther)
{
    if (!GetParam().ink) {
        return;
    }
    for (const qreal ratio : kRatios) {
        const QImage image = at(ratio);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                // With premultiplied alpha, against which a channel is off by one at the most.
                const QRgb expected = qPremultiply((*GetParam().ink & 0x00FFFFFFU) |
                                                   (static_cast<QRgb>(qAlpha(image.pixel(x, y))) << 24U));
                const QRgb pixel = reinterpret_cast<const QRgb*>(image.constScanLine(y))[x];
                ASSERT_NEAR(qRed(pixel), qRed(expected), 1);
                ASSERT_NEAR(qGreen(pixel), qGreen(expected), 1);
                ASSERT_NEAR(qBlue(pixel), qBlue(expected), 1);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(KovalinImage, Pictures, testing::ValuesIn(pictures()), [](const auto& test) {
    return QString(QLatin1String(test.param.name)).replace(u'-', u'_').toStdString();
});

TEST(KovalinImage, HasThesePicturesAndNoOthers)
{
    QStringList names;
    for (const Picture& picture : pictures()) {
        names.append(QLatin1String(picture.name));
    }
    EXPECT_EQ(kovalinImageNames(), names);
}

TEST(KovalinImage, IsNullForAMissingName)
{
    const QStringList names{QString(),
                            QStringLiteral("no-such-picture"),
                            QStringLiteral("Search"),
                            QStringLiteral("search.svg"),
                            QStringLiteral("search "),
                            QStringLiteral("../pictures/search"),
                            QStringLiteral("./search"),
                            QStringLiteral(":/QXSDKKovalinKit/pictures/search"),
                            QStringLiteral("search") + QChar(u'\0'),
                            QStringLiteral("%s"),
                            QString(100'000, u'x')};
    for (const QString& name : names) {
        const VectorImage picture = kovalinImageNamed(name);
        EXPECT_TRUE(picture.isNull());
        EXPECT_TRUE(picture.image({24, 24}, 1).isNull());
    }
}

/// The alpha of the pixels along one line across a picture, from `from` to `to` in points.
std::vector<int> alphaAcross(const QImage& image, const QPointF& from, const QPointF& to)
{
    const QPointF first = from * image.devicePixelRatio();
    const QPointF last = to * image.devicePixelRatio();
    const int count = static_cast<int>((last - first).manhattanLength());
    std::vector<int> alpha;
    for (int i = 0; i < count; ++i) {
        alpha.push_back(qAlpha(image.pixel((first + (last - first) * i / count).toPoint())));
    }
    return alpha;
}

TEST(KovalinImage, StraightLinesLieOnWholePixels)
{
    for (const int ratio : {1, 2, 3}) {
        // The shaft of the arrow, 2 points wide, from 11 to 13 points.
        const QImage arrow = kovalinImageNamed(QStringLiteral("search-back")).image({24, 24}, ratio);
        std::vector<int> expected(static_cast<std::size_t>(2 * ratio), 0);
        expected.insert(expected.end(), static_cast<std::size_t>(2 * ratio), 255);
        expected.insert(expected.end(), static_cast<std::size_t>(2 * ratio), 0);
        EXPECT_THAT(alphaAcross(arrow, {15, 9}, {15, 15}), testing::ElementsAreArray(expected));
    }
}

TEST(KovalinImage, BackPointsToTheLeftAndIsEvenAcross)
{
    const QImage arrow = kovalinImageNamed(QStringLiteral("search-back")).image({24, 24}, 3);
    EXPECT_NE(arrow, arrow.mirrored(true, false));
    EXPECT_EQ(qAlpha(arrow.pixel(6 * 3, 12 * 3)), 255);
    EXPECT_EQ(qAlpha(arrow.pixel(11 * 3, 6 * 3)), 255); // the upper end of the head
    EXPECT_EQ(qAlpha(arrow.pixel(18 * 3, 6 * 3)), 0);
}

TEST(KovalinImage, FacesTheButtonThatItStandsOn)
{
    // The lowest 7.5 points lie over the button: nothing is there but the hands, and they don't end at the edge.
    const QImage graphic = kovalinImageNamed(QStringLiteral("linkButtonGraphic")).image({200, 110}, 2);
    const QImage strip = graphic.copy(0, 205, 400, 15);
    const int covered = strip.width() * strip.height() - clearPixels(strip);
    EXPECT_GT(covered, 0);
    EXPECT_LT(covered, strip.width() * strip.height() / 3);
}

TEST(KovalinImage, IsTintedAsATemplate)
{
    const QColor tint(0x38, 0xC9, 0x8D);
    const VectorImage picture = kovalinImageNamed(QStringLiteral("search"));
    const QImage image = picture.asTemplate().image({24, 24}, 2, tint);
    EXPECT_EQ(image.pixelColor(11 * 2, 5 * 2), tint);
    EXPECT_EQ(qAlpha(image.pixel(11 * 2, 11 * 2)), 0);
    EXPECT_EQ(clearPixels(image), clearPixels(picture.image({24, 24}, 2)));
}

TEST(KovalinImage, IsTheSameAtEachCall)
{
    EXPECT_EQ(kovalinImageNamed(QStringLiteral("retry")), kovalinImageNamed(QStringLiteral("retry")));
    EXPECT_NE(kovalinImageNamed(QStringLiteral("retry")), kovalinImageNamed(QStringLiteral("search")));
}

TEST(KovalinImage, IsDrawnByManyThreadsAtOnce)
{
    const auto draw = [] {
        std::vector<QImage> images;
        for (const Picture& picture : pictures()) {
            const VectorImage image = kovalinImageNamed(QLatin1String(picture.name));
            images.push_back(image.image(image.size(), 2));
        }
        return images;
    };
    const std::vector<QImage> expected = draw();
    std::atomic<int> different = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] { different += draw() == expected ? 0 : 1; });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(different, 0);
}

} // namespace
