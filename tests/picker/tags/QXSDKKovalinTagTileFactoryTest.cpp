#include "picker/tags/QXSDKKovalinTagTileFactory.h"

#include "platform/foundation/Color.h"
#include "search/QXSDKKovalinTagIndex.h"
#include "support/QtPrinting.h"

#include <QtCore/QHash>

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <set>

using kovalin::platform::colorsEqual;

namespace {

class ScriptedTagIndex final : public QXSDKKovalinTagIndex {
public:
    QXSDKKovalinEmotion emotionForTag(const QString& tag) const override
    {
        return emotions.value(tag, QXSDKKovalinEmotionUnknown);
    }
    KovalinPackPtr packForTag(const QString& tag) const override { return packs.value(tag); }

    QHash<QString, QXSDKKovalinEmotion> emotions;
    QHash<QString, KovalinPackPtr> packs;
};

KovalinPackPtr packOfColor(const std::optional<QColor>& color)
{
    auto pack = std::make_shared<KovalinPack>();
    pack->setColor(color);
    return pack;
}

QString tag(int number)
{
    return QStringLiteral("tag %1").arg(number);
}

/// Far more than there are turns.
constexpr int tagCount = 2000;

/// Hue in degrees, which QColor keeps to a hundredth.
double hueOf(const QColor& color)
{
    return std::round(color.hueF() * 36000.0) / 100.0;
}

QColor colorOfHue(int degrees)
{
    return QColor::fromHsvF(static_cast<float>(degrees) / 360.0F, 0.5F, 0.75F);
}

/// By how many degrees the tag turns a hue: read off one that no turn takes across the wrap.
int turnOf(const QString& tag)
{
    return static_cast<int>(hueOf(QXSDKRotateColorForTag(colorOfHue(180), tag))) - 180;
}

QString tagThatTurnsBy(int degrees)
{
    for (int number = 0; number < tagCount; ++number) {
        if (turnOf(tag(number)) == degrees) {
            return tag(number);
        }
    }
    ADD_FAILURE() << "no tag turns by " << degrees;
    return {};
}

class QXSDKKovalinTagTileFactoryTest : public testing::Test {
protected:
    QXSDKKovalinTagTileFactoryTest()
    {
        index.emotions = {{hello, QXSDKKovalinEmotionGreeting}, {no, QXSDKKovalinEmotionNegative}};
        index.packs = {{party, packOfColor(QColor(Qt::darkYellow))}};
    }

    const QString hello = QStringLiteral("hello");
    const QString no = QStringLiteral("no");
    const QString party = QStringLiteral("Party");
    const QList<QColor> palette = QXSDKKovalinTagTileFactory::defaultColors();
    ScriptedTagIndex index;
};

TEST_F(QXSDKKovalinTagTileFactoryTest, HasAPaletteOfAColourForEachEmotion)
{
    struct Row {
        float hue, saturation, brightness;
    };
    const std::vector<Row> rows = {{0.656F, 0.897F, 0.968F}, {0.944F, 0.647F, 0.988F}, {0.389F, 0.855F, 0.675F},
                                   {0.756F, 0.48F, 0.867F},  {0.481F, 0.844F, 0.678F}, {0.111F, 0.83F, 0.882F}};
    ASSERT_EQ(palette.size(), 6);
    for (qsizetype i = 0; i < palette.size(); ++i) {
        const Row& row = rows.at(static_cast<std::size_t>(i));
        EXPECT_NEAR(hueOf(palette[i]), row.hue * 360.0, 1e-4) << i;
        EXPECT_NEAR(palette[i].hsvSaturationF(), row.saturation, 1.0 / 65535) << i;
        EXPECT_NEAR(palette[i].valueF(), row.brightness, 1.0 / 65535) << i;
        EXPECT_EQ(palette[i].alphaF(), 1.0F) << i;
    }
}

TEST_F(QXSDKKovalinTagTileFactoryTest, KeepsWhatItIsMadeOf)
{
    const QXSDKKovalinTagTileFactory factory({Qt::red, Qt::blue}, true, false);
    EXPECT_EQ(factory.colors(), QList<QColor>({Qt::red, Qt::blue}));
    EXPECT_TRUE(factory.shouldRandomize());
    EXPECT_FALSE(factory.shouldUsePackColors());
    EXPECT_TRUE(QXSDKKovalinTagTileFactory(palette, false, true).shouldUsePackColors());
}

TEST_F(QXSDKKovalinTagTileFactoryTest, MakesATileATagInOrderWithRepeats)
{
    const QXSDKKovalinTagTileFactory factory(palette, false, true);
    const QXSDKTagTileList tiles = factory.fromTags({no, hello, party, no}, index);
    ASSERT_EQ(tiles.size(), 4);
    EXPECT_TRUE(tiles[0]->isEqual(QXSDKTagTile(no, palette[3])));
    EXPECT_TRUE(tiles[1]->isEqual(QXSDKTagTile(hello, palette[0])));
    EXPECT_TRUE(tiles[2]->isEqual(QXSDKTagTile(party, Qt::darkYellow)));
    EXPECT_TRUE(tiles[3]->isEqual(*tiles[0]));
    EXPECT_TRUE(factory.fromTags({}, index).isEmpty());
}

TEST_F(QXSDKKovalinTagTileFactoryTest, GivesThePacksTitleThePacksColourUnturned)
{
    const QXSDKKovalinTagTileFactory factory(palette, true, true);
    EXPECT_TRUE(colorsEqual(factory.colorForTag(party, index), Qt::darkYellow));
    index.packs[party] = packOfColor(QColor(10, 20, 30, 40));
    EXPECT_TRUE(colorsEqual(factory.colorForTag(party, index), QColor(10, 20, 30, 40)));
    index.packs[party] = packOfColor(std::nullopt);
    EXPECT_FALSE(factory.colorForTag(party, index).isValid());
}

TEST_F(QXSDKKovalinTagTileFactoryTest, GivesThePacksTitleAPaletteColourWherePackColoursAreNotWanted)
{
    const QXSDKKovalinTagTileFactory factory({Qt::red}, false, false);
    EXPECT_TRUE(colorsEqual(factory.colorForTag(party, index), Qt::red));
}

TEST_F(QXSDKKovalinTagTileFactoryTest, GivesATagWithoutAnEmotionTheSixthColour)
{
    const QXSDKKovalinTagTileFactory factory(palette, false, true);
    EXPECT_TRUE(colorsEqual(factory.colorForTag(QStringLiteral("unheard of"), index), palette[5]));
}

TEST_F(QXSDKKovalinTagTileFactoryTest, BeginsAShortPaletteAgain)
{
    const QXSDKKovalinTagTileFactory factory({Qt::red, Qt::blue}, false, true);
    EXPECT_TRUE(colorsEqual(factory.colorForTag(no, index), Qt::blue)) << "emotion 3";
    EXPECT_TRUE(colorsEqual(factory.colorForTag(QStringLiteral("unheard of"), index), Qt::blue)) << "emotion 5";
    EXPECT_TRUE(colorsEqual(factory.colorForTag(hello, index), Qt::red)) << "emotion 0";
    EXPECT_FALSE(QXSDKKovalinTagTileFactory({}, true, true).colorForTag(no, index).isValid());
}

TEST_F(QXSDKKovalinTagTileFactoryTest, TurnsThePaletteColourByTheTagOnlyIfAsked)
{
    const QXSDKKovalinTagTileFactory factory(palette, true, true);
    EXPECT_TRUE(colorsEqual(factory.colorForTag(hello, index), QXSDKRotateColorForTag(palette[0], hello)));

    const QColor clear(10, 200, 30, 40);
    EXPECT_TRUE(colorsEqual(QXSDKKovalinTagTileFactory({clear}, false, true).colorForTag(hello, index), clear));
    EXPECT_EQ(QXSDKKovalinTagTileFactory({clear}, true, true).colorForTag(hello, index).alphaF(), 1.0F);
}

TEST(QXSDKRotateColorForTag, GivesTheSameColourEachTime)
{
    const QColor color = QXSDKRotateColorForTag(Qt::blue, QStringLiteral("hello"));
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(colorsEqual(QXSDKRotateColorForTag(Qt::blue, QStringLiteral("hello")), color));
    }
}

TEST(QXSDKRotateColorForTag, TurnsByMinus18To17WholeDegrees)
{
    std::set<int> turns;
    for (int number = 0; number < tagCount; ++number) {
        turns.insert(turnOf(tag(number)));
    }
    EXPECT_EQ(turns.size(), 36U);
    EXPECT_EQ(*turns.begin(), -18);
    EXPECT_EQ(*turns.rbegin(), 17);
}

TEST(QXSDKRotateColorForTag, TurnsAllHuesAlike)
{
    for (const int turn : {-18, -1, 0, 17}) {
        const QString turning = tagThatTurnsBy(turn);
        for (int degrees = 0; degrees < 360; ++degrees) {
            EXPECT_EQ(hueOf(QXSDKRotateColorForTag(colorOfHue(degrees), turning)), (degrees + 360 + turn) % 360);
        }
    }
}

TEST(QXSDKRotateColorForTag, CrossesTheWrap)
{
    EXPECT_EQ(hueOf(QXSDKRotateColorForTag(colorOfHue(5), tagThatTurnsBy(-18))), 347);
    EXPECT_EQ(hueOf(QXSDKRotateColorForTag(colorOfHue(350), tagThatTurnsBy(17))), 7);
}

TEST(QXSDKRotateColorForTag, CutsTheHueToWholeDegrees)
{
    const QString turnsBy0 = tagThatTurnsBy(0);
    EXPECT_EQ(hueOf(QXSDKRotateColorForTag(QColor::fromHsvF(0.111F, 0.5F, 0.5F), turnsBy0)), 39) << "39.96 degrees";
    EXPECT_EQ(hueOf(QXSDKRotateColorForTag(QColor::fromHsvF(0.656F, 0.5F, 0.5F), turnsBy0)), 236) << "236.16 degrees";
}

TEST(QXSDKRotateColorForTag, KeepsSaturationAndBrightnessAndIsOpaque)
{
    const QColor turned = QXSDKRotateColorForTag(QColor::fromHsvF(0.25F, 0.4F, 0.6F, 0.2F), QStringLiteral("hello"));
    EXPECT_NEAR(turned.hsvSaturationF(), 0.4F, 1.0 / 65535);
    EXPECT_NEAR(turned.valueF(), 0.6F, 1.0 / 65535);
    EXPECT_EQ(turned.alphaF(), 1.0F);
}

TEST(QXSDKRotateColorForTag, KnowsTheHueOfAnyColourModel)
{
    const QString turning = tagThatTurnsBy(10);
    EXPECT_EQ(hueOf(QXSDKRotateColorForTag(QColor(0, 255, 0), turning)), 130);
    EXPECT_EQ(hueOf(QXSDKRotateColorForTag(QColor(0, 255, 0).toHsl(), turning)), 130);
}

TEST(QXSDKRotateColorForTag, LeavesAGreyGrey)
{
    const QColor turned = QXSDKRotateColorForTag(QColor(100, 100, 100, 50), tagThatTurnsBy(10));
    EXPECT_TRUE(colorsEqual(turned, QColor(100, 100, 100)));
}

TEST(QXSDKRotateColorForTag, LeavesWhatIsNoColour)
{
    EXPECT_FALSE(QXSDKRotateColorForTag(QColor(), QStringLiteral("hello")).isValid());
}

} // namespace
