#include "kovalin-backend/drawing/AvatarLook.h"

#include "kovalin-backend/drawing/PngFile.h"
#include "kovalin-backend/drawing/StickerDrawing.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QSet>

#include <gtest/gtest.h>

using namespace kovalin::drawing;

namespace {

TEST(AvatarLook, FollowsFromTheIdOnEveryMachine)
{
    // Written down once: a change of these would give everybody another face.
    const AvatarLook ada = AvatarLook::of(QStringLiteral("ada"));
    EXPECT_EQ(ada.hair, Hair::Spikes);
    EXPECT_EQ(ada.skin.name(), QStringLiteral("#fdd3b2"));
    EXPECT_EQ(ada.hairColour.name(), QStringLiteral("#e07736"));
    EXPECT_EQ(ada.clothes, Clothes::Turtleneck);
    EXPECT_EQ(ada.glasses, Glasses::HalfRim);
}

TEST(AvatarLook, MostIdsLookDifferent)
{
    constexpr int ids = 300;
    QSet<QByteArray> pictures;
    for (int i = 0; i < ids; ++i) {
        const QImage icon = drawAvatarIcon(QStringLiteral("user-%1").arg(i), 48);
        pictures.insert(QCryptographicHash::hash({reinterpret_cast<const char*>(icon.constBits()), icon.sizeInBytes()},
                                                 QCryptographicHash::Sha1));
    }
    EXPECT_GE(pictures.size(), ids * 99 / 100);
}

TEST(AvatarLook, EveryTextHasAFace)
{
    const QString odd[] = {QString(),
                           QStringLiteral(" "),
                           QStringLiteral("../../etc/passwd"),
                           QStringLiteral("%s%n"),
                           QStringLiteral("<script>"),
                           QString(QChar(0)),
                           QString(QChar(0xD800)),
                           QString(100000, u'x'),
                           QStringLiteral("😀\u202E\u0301")};
    for (const QString& id : odd) {
        const QImage icon = drawAvatarIcon(id, 64);
        ASSERT_EQ(icon.size(), QSize(64, 64));
        EXPECT_EQ(qAlpha(icon.pixel(32, 32)), 255) << id.left(20).toStdString();
    }
}

TEST(AvatarLook, BeardsAndLongLashesDontMeet)
{
    for (int i = 0; i < 2000; ++i) {
        const AvatarLook look = AvatarLook::of(QString::number(i));
        EXPECT_FALSE(look.beard != Beard::None && look.hasLashes) << i;
        EXPECT_FALSE(look.hair == Hair::Scarf && look.extra != Extra::None) << i;
    }
}

TEST(AvatarIcon, StandsFreeAtEverySize)
{
    for (const int size : {16, 24, 36, 48, 64, 320, 1024}) {
        const QImage icon = drawAvatarIcon(QStringLiteral("grace"), size);
        ASSERT_EQ(icon.size(), QSize(size, size));
        EXPECT_EQ(qAlpha(icon.pixel(0, 0)), 0);
        EXPECT_EQ(qAlpha(icon.pixel(size - 1, size - 1)), 0);
        EXPECT_EQ(qAlpha(icon.pixel(size / 2, size / 2)), 255);
        EXPECT_LT(encodedAsPng(icon).size(), size <= 64 ? 8 * 1024 : 100 * 1024);
    }
}

} // namespace
