#include "picker/grid/KovalinStickerName.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace {

QString nameOf(const std::optional<QStringList>& tags, const std::optional<QString>& templateId = std::nullopt)
{
    KovalinSticker sticker;
    sticker.setTags(tags);
    sticker.setTemplateId(templateId);
    return kovalinStickerName(sticker);
}

TEST(KovalinStickerName, IsTheFirstTagWithoutItsStar)
{
    EXPECT_EQ(nameOf(QStringList{QStringLiteral("Good morning"), QStringLiteral("hi")}),
              QStringLiteral("Good morning"));
    EXPECT_EQ(nameOf(QStringList{QStringLiteral("hi*"), QStringLiteral("hello")}), QStringLiteral("hi"));
}

TEST(KovalinStickerName, PassesOverTagsThatOnlyMachinesRead)
{
    EXPECT_EQ(nameOf(QStringList{QStringLiteral("#promo"), QStringLiteral("lang:en"), QStringLiteral("*"), QString(),
                                 QStringLiteral("hi")},
                     QStringLiteral("hello-wave")),
              QStringLiteral("hi"));
}

TEST(KovalinStickerName, IsTheTemplatesWordsWithoutATag)
{
    EXPECT_EQ(nameOf(std::nullopt, QStringLiteral("hello-wave")), QStringLiteral("hello wave"));
    EXPECT_EQ(nameOf(QStringList{QStringLiteral("#promo")}, QStringLiteral("good_night_2")),
              QStringLiteral("good night 2"));
}

TEST(KovalinStickerName, IsTheProductsWordWhereNothingCanBeRead)
{
    EXPECT_EQ(nameOf(std::nullopt), QStringLiteral("Kovalin"));
    EXPECT_EQ(nameOf(QStringList(), QStringLiteral("30001001")), QStringLiteral("Kovalin"));
}

} // namespace
