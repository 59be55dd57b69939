#include "apps/drawing/ExampleContent.h"

#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QSet>

#include <gtest/gtest.h>

namespace {

struct Pair {
    QString text;
    QString comicId;
    int count;
};

QList<Pair> pairs()
{
    QList<Pair> all;
    const QStringList lines =
        QString::fromUtf8(example_content::read(QStringLiteral("pairs.tsv"))).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QStringList fields = line.split(u'\t');
        EXPECT_EQ(fields.size(), 3) << line.toStdString();
        all.append({fields.value(0), fields.value(1), fields.value(2).toInt()});
    }
    return all;
}

QSet<QString> comicIds()
{
    QSet<QString> ids;
    const QJsonObject document = QJsonDocument::fromJson(example_content::read(QStringLiteral("packs.json"))).object();
    const QJsonArray packs = document.value(u"packs").toArray();
    for (const QJsonValue& pack : packs) {
        const QJsonArray stickers = pack[u"stickers"].toArray();
        for (const QJsonValue& sticker : stickers) {
            ids.insert(sticker[u"comic_id"].toString());
        }
    }
    return ids;
}

TEST(ExamplePairs, AreMany)
{
    EXPECT_GE(pairs().size(), 4000);
}

TEST(ExamplePairs, ReachEverySticker)
{
    QHash<QString, int> texts;
    const QList<Pair> all = pairs();
    for (const Pair& pair : all) {
        EXPECT_FALSE(pair.text.trimmed().isEmpty());
        EXPECT_GT(pair.count, 0) << pair.text.toStdString();
        ++texts[pair.comicId];
    }
    EXPECT_EQ(QSet<QString>(texts.keyBegin(), texts.keyEnd()), comicIds());
    for (const int count : std::as_const(texts)) {
        EXPECT_GE(count, 10);
    }
}

} // namespace
