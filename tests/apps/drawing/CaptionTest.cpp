#include "apps/drawing/ExampleContent.h"
#include "kovalin-backend/drawing/LetterShapes.h"
#include "kovalin-backend/drawing/Lettering.h"

#include <gtest/gtest.h>

using namespace kovalin::drawing;

namespace {

constexpr QSizeF room(297, 78);
constexpr qreal tallest = 50;
constexpr Lettering everyLettering[] = {Lettering::Straight, Lettering::Arch, Lettering::Wave, Lettering::Slant,
                                        Lettering::Stagger};

QRectF boundsOf(const QString& caption, Lettering lettering)
{
    return drawCaption(caption, lettering, colours::red, room, tallest).bounds();
}

TEST(Caption, FitsIntoItsRoomHoweverLongItIs)
{
    const QString captions[] = {QStringLiteral("a"),
                                QStringLiteral("!"),
                                QStringLiteral("hello"),
                                QStringLiteral("I have no idea what you mean by that, honestly"),
                                QString(500, u'm'),
                                QStringLiteral("word ").repeated(60),
                                QStringLiteral("Rindfleischetikettierungsüberwachungsaufgabenübertragungsgesetz")};
    for (const QString& caption : captions) {
        for (const Lettering lettering : everyLettering) {
            const QRectF bounds = boundsOf(caption, lettering);
            EXPECT_FALSE(bounds.isEmpty());
            EXPECT_LE(bounds.width(), room.width() + 0.01) << caption.left(30).toStdString();
            EXPECT_LE(bounds.height(), room.height() + 0.01) << caption.left(30).toStdString();
            EXPECT_NEAR(bounds.center().x(), 0, 0.01);
            EXPECT_NEAR(bounds.center().y(), 0, 0.01);
        }
    }
}

TEST(Caption, OfNothingIsNothing)
{
    EXPECT_TRUE(boundsOf(QString(), Lettering::Arch).isEmpty());
    EXPECT_TRUE(boundsOf(QStringLiteral(" \n\t "), Lettering::Wave).isEmpty());
}

TEST(Caption, TakesOtherScriptsFromTheFont)
{
    EXPECT_FALSE(boundsOf(QStringLiteral("ÄÖÜ ñ é"), Lettering::Straight).isEmpty());
    EXPECT_FALSE(boundsOf(QStringLiteral("Привет"), Lettering::Straight).isEmpty());
    EXPECT_NO_THROW(boundsOf(QString(QChar(0xDC00)) + QChar(0xD800), Lettering::Straight));
}

TEST(Caption, BreaksIntoLinesRatherThanShrink)
{
    // On one line the letters would be half as high.
    const QRectF bounds = boundsOf(QStringLiteral("I have no idea what you mean"), Lettering::Straight);
    EXPECT_GT(bounds.height(), 60);
}

TEST(LetterShape, IsThereForWhatCaptionsUse)
{
    const QString letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789!?.,:'-&+=/()%#*\u2019");
    for (const QChar letter : letters) {
        ASSERT_TRUE(letterShapeOf(letter)) << QString(letter).toStdString();
        EXPECT_GT(letterShapeOf(letter)->width, 0);
    }
    EXPECT_EQ(letterShapeOf(QChar(u'é')), nullptr);
    EXPECT_EQ(letterShapeOf(QChar(u'a')), nullptr);
}

TEST(ExampleCaptions, NeedNoFont)
{
    for (const StickerTemplate& sticker : example_content::templates().all()) {
        for (const QChar letter : sticker.caption.toUpper()) {
            EXPECT_TRUE(letter == u' ' || letterShapeOf(letter)) << sticker.id.toStdString();
        }
    }
}

} // namespace
