#include "apps/drawing/ExampleContent.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSet>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

using example_content::templates;

QJsonArray packs()
{
    static const QJsonArray read =
        QJsonDocument::fromJson(example_content::read(QStringLiteral("packs.json"))).object().value(u"packs").toArray();
    return read;
}

/// Of the packs but "popular", which repeats stickers of the others.
std::vector<QJsonObject> stickers()
{
    std::vector<QJsonObject> all;
    const QJsonArray everyPack = packs();
    for (const QJsonValue& pack : everyPack) {
        const QJsonArray list = pack[u"id"].toString() == u"popular" ? QJsonArray() : pack[u"stickers"].toArray();
        for (const QJsonValue& sticker : list) {
            all.push_back(sticker.toObject());
        }
    }
    return all;
}

std::string nameOf(const QJsonObject& sticker)
{
    return sticker.value(u"template_id").toString().toStdString();
}

bool isForTwo(const QJsonObject& sticker)
{
    return sticker.value(u"capabilities").toArray().contains(QStringLiteral("FRIENDS"));
}

TEST(ExamplePacks, AreManyAndFull)
{
    EXPECT_GE(packs().size(), 10);
    EXPECT_GE(stickers().size(), 160U);
    EXPECT_GE(std::ranges::count_if(stickers(), isForTwo), 30);
    const QJsonArray everyPack = packs();
    for (const QJsonValue& pack : everyPack) {
        EXPECT_GE(pack[u"stickers"].toArray().size(), 8) << pack[u"id"].toString().toStdString();
    }
}

TEST(ExamplePacks, HaveTheFormOfThePacksDocument)
{
    QSet<QString> ids;
    QSet<QString> titles;
    const QJsonArray everyPack = packs();
    for (const QJsonValue& pack : everyPack) {
        EXPECT_FALSE(pack[u"id"].toString().isEmpty());
        EXPECT_FALSE(pack[u"title"].toString().isEmpty());
        EXPECT_TRUE(pack[u"visible"].isBool());
        EXPECT_THAT(pack[u"color"].toString().toStdString(), testing::MatchesRegex("#[0-9A-F]{6}"));
        ids.insert(pack[u"id"].toString());
        titles.insert(pack[u"title"].toString());
    }
    EXPECT_EQ(ids.size(), everyPack.size());
    EXPECT_EQ(titles.size(), everyPack.size());
    for (const char16_t* const known :
         {u"popular", u"greeting", u"affection", u"positive", u"negative", u"occasions"}) {
        EXPECT_TRUE(ids.contains(QString::fromUtf16(known)));
    }
    EXPECT_EQ(everyPack.first()[u"id"].toString(), QStringLiteral("popular"));
}

TEST(ExamplePacks, DrawEachTemplateOnce)
{
    QSet<QString> templateIds;
    QSet<QString> comicIds;
    for (const QJsonObject& sticker : stickers()) {
        const QString templateId = sticker.value(u"template_id").toString();
        EXPECT_TRUE(templates().find(templateId)) << nameOf(sticker);
        templateIds.insert(templateId);
        comicIds.insert(sticker.value(u"comic_id").toString());
    }
    EXPECT_EQ(static_cast<std::size_t>(templateIds.size()), stickers().size());
    EXPECT_EQ(static_cast<std::size_t>(comicIds.size()), stickers().size());
    EXPECT_EQ(stickers().size(), templates().all().size());
}

TEST(ExamplePacks, NameComicsAsTheModelDoes)
{
    for (const QJsonObject& sticker : stickers()) {
        const QString comicId = sticker.value(u"comic_id").toString();
        bool isNumber = false;
        const int number = comicId.toInt(&isNumber); // 32 bits
        EXPECT_TRUE(isNumber) << nameOf(sticker);
        EXPECT_EQ(QString::number(number), comicId) << nameOf(sticker);
    }
}

TEST(ExamplePacks, LeavePlacesForAvatarsInUrls)
{
    for (const QJsonObject& sticker : stickers()) {
        const QString form = isForTwo(sticker) ? QStringLiteral("{base}/stickers/%1/{avatar}/%s.png")
                                               : QStringLiteral("{base}/stickers/%1/{avatar}.png");
        EXPECT_EQ(sticker.value(u"url").toString(), form.arg(sticker.value(u"template_id").toString()));
        EXPECT_EQ(isForTwo(sticker), templates().find(sticker.value(u"template_id").toString())->pair.has_value())
            << nameOf(sticker);
    }
}

TEST(ExamplePacks, RepeatStickersAsPopularWithoutTheirTags)
{
    const std::vector<QJsonObject> all = stickers();
    const QJsonArray popular = packs().first()[u"stickers"].toArray();
    for (const QJsonValue& value : popular) {
        const QJsonObject sticker = value.toObject();
        EXPECT_FALSE(sticker.contains(u"tags")) << nameOf(sticker);
        const auto same = std::ranges::find_if(all, [&](const QJsonObject& other) {
            QJsonObject bare = other;
            bare.remove(u"tags");
            return bare == sticker;
        });
        EXPECT_TRUE(same != all.end()) << nameOf(sticker);
    }
}

TEST(ExampleTags, HaveTheirForms)
{
    int hashed = 0;
    int withColon = 0;
    int ofSeveralWords = 0;
    for (const QJsonObject& sticker : stickers()) {
        const QJsonArray tags = sticker.value(u"tags").toArray();
        ASSERT_GE(tags.size(), 3) << nameOf(sticker);
        EXPECT_TRUE(tags.first().toString().endsWith(u'*')) << nameOf(sticker);
        QSet<QString> seen;
        for (const QJsonValue& value : tags) {
            const QString tag = value.toString();
            EXPECT_EQ(tag, tag.simplified().toLower()) << nameOf(sticker);
            EXPECT_LE(tag.count(u'*'), tag.endsWith(u'*') ? 1 : 0) << tag.toStdString();
            EXPECT_NE(tag, QStringLiteral("*")) << nameOf(sticker);
            EXPECT_LE(tag.lastIndexOf(u'#'), 0) << tag.toStdString();
            hashed += tag.startsWith(u'#') ? 1 : 0;
            withColon += tag.contains(u':') ? 1 : 0;
            ofSeveralWords += tag.contains(u' ') ? 1 : 0;
            seen.insert(tag);
        }
        EXPECT_EQ(seen.size(), tags.size()) << nameOf(sticker);
    }
    EXPECT_GE(hashed, 3);
    EXPECT_GE(withColon, 5);
    EXPECT_GE(ofSeveralWords, 100);
}

TEST(ExampleConfigs, SwitchLearnedSearchOn)
{
    const QJsonObject configs = QJsonDocument::fromJson(example_content::read(QStringLiteral("configs.json"))).object();
    EXPECT_EQ(configs.value(u"ttlSeconds").toInt(), 3600);
    EXPECT_TRUE(configs.value(u"configs")[u"kovalinLearnedSearch"][u"enabled"].toBool());
}

} // namespace
