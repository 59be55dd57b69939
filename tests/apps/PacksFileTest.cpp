#include "apps/KovalinProgram.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kovalin::test;
using testing::HasSubstr;

namespace {

class KovalinPacksFile : public testing::Test {
protected:
    ProgramResult searchIn(const QString& path, const QStringList& more)
    {
        return runKovalin(
            QStringList{QStringLiteral("search"), QStringLiteral("--packs"), path, QStringLiteral("--json")} + more);
    }

    /// The comic ids found under exactly "t", in a document of this content.
    QString found(const QByteArray& document) { return found(document, QStringLiteral("t")); }

    QString found(const QByteArray& document, const QString& tag)
    {
        const QString path = files.write(QStringLiteral("packs.json"), document);
        const auto result = searchIn(path, {QStringLiteral("--exact"), tag});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        if (result.objects().size() != 1) {
            return QStringLiteral("no answer");
        }
        QStringList ids;
        for (const QJsonValue sticker : result.objects()[0][u"stickers"].toArray()) {
            ids.append(sticker[u"comic_id"].toString(QStringLiteral("-")));
        }
        return ids.join(u' ');
    }

    void expectRefused(const QString& path, const QByteArray& fault)
    {
        SCOPED_TRACE(fault.toStdString());
        const auto result = searchIn(path, {QStringLiteral("t")});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors.toStdString(),
                  QByteArray("kovalin: " + path.toUtf8() + ": " + fault + '\n').toStdString());
    }

    void expectDocumentRefused(const QByteArray& document, const QByteArray& fault)
    {
        SCOPED_TRACE(document.left(60).toStdString());
        expectRefused(files.write(QStringLiteral("packs.json"), document), fault);
    }

    Files files;
};

TEST_F(KovalinPacksFile, IsReadWithPacksAndStickersInOrder)
{
    EXPECT_EQ(found(R"({"packs": [{"stickers": [{"comic_id": "1", "url": "u", "tags": ["t"]},
                                                {"comic_id": "2", "url": "u", "tags": ["other", "t"]}]},
                                  {"stickers": [{"comic_id": "3", "url": "u", "tags": ["t"]}]}]})"),
              QStringLiteral("1 2 3"));
}

TEST_F(KovalinPacksFile, GivesPacksTheirOwnFieldsWhereverTheyStand)
{
    EXPECT_EQ(found(R"({"packs": [{"stickers": [{"comic_id": "1"}], "visible": true, "title": "t"}]})"),
              QStringLiteral("1"));
    EXPECT_EQ(found(R"({"packs": [{"title": "t", "visible": false, "stickers": [{"comic_id": "1"}]}]})"), QString());
}

TEST_F(KovalinPacksFile, PassesOverElementsThatAreNoObjects)
{
    EXPECT_EQ(found(R"({"packs": [null, 1, "p", [{"stickers": [{"comic_id": "9", "tags": ["t"]}]}],
                                  {"stickers": [null, 2, "s", true, [{"comic_id": "8", "tags": ["t"]}],
                                                {"comic_id": "1", "tags": ["t"]}]}]})"),
              QStringLiteral("1"));
}

TEST_F(KovalinPacksFile, PassesOverWhatItDoesNotKnow)
{
    EXPECT_EQ(found(R"({"version": {"packs": [{"stickers": [{"comic_id": "9", "tags": ["t"]}]}]}, "list": [[{}]],
                        "packs": [{"extra": {"stickers": [{"comic_id": "8", "tags": ["t"]}]}, "n": 1.5e3,
                                   "stickers": [{"more": {"comic_id": "7", "tags": ["t"]}, "comic_id": "1",
                                                 "list": [{"tags": ["t"]}], "tags": ["t"]}], "last": [{}]}],
                        "stickers": [{"comic_id": "6", "tags": ["t"]}]})"),
              QStringLiteral("1"));
}

TEST_F(KovalinPacksFile, LeavesFieldsOfAnotherTypeAbsent)
{
    EXPECT_EQ(found(R"({"packs": [{"id": {"a": 1}, "title": [1], "color": 7, "visible": "yes", "stickers": [
                          {"comic_id": 5, "url": {"u": "v"}, "tags": ["t"]},
                          {"comic_id": ["1"], "tags": [1, null, {"t": "t"}, ["t"], "t"]},
                          {"comic_id": "3", "tags": "t"}, {"comic_id": "4", "tags": {"t": "t"}}]}]})"),
              QStringLiteral("- -"));
}

TEST_F(KovalinPacksFile, TakesStickersThatAreNoListForNone)
{
    for (const char* stickers : {"{\"comic_id\": \"1\", \"tags\": [\"t\"]}", "null", "\"t\"", "7", "true"}) {
        EXPECT_EQ(
            found(QByteArray("{\"packs\": [{\"visible\": true, \"title\": \"t\", \"stickers\": ") + stickers + "}]}"),
            QString());
    }
}

TEST_F(KovalinPacksFile, CountsTheLastOfEqualKeys)
{
    EXPECT_EQ(found(R"({"packs": [{"stickers": [{"comic_id": "1", "tags": ["t"]}]}],
                        "packs": [{"stickers": [{"comic_id": "2", "tags": ["t"]}]}]})"),
              QStringLiteral("2"));
    EXPECT_EQ(found(R"({"packs": [{"stickers": [{"comic_id": "1", "tags": ["t"]}],
                                   "stickers": [{"comic_id": "2", "tags": ["t"]}]}]})"),
              QStringLiteral("2"));
    EXPECT_EQ(found(R"({"packs": [{"stickers": [{"comic_id": "1", "tags": ["t"]}], "stickers": 0}]})"), QString());
    EXPECT_EQ(found(R"({"packs": [{"stickers": 0, "stickers": [{"comic_id": "1", "tags": ["t"]}]}]})"),
              QStringLiteral("1"));
    EXPECT_EQ(found(R"({"packs": [{"stickers": [{"comic_id": "1", "comic_id": "2", "tags": ["x"], "tags": ["t"]},
                                                {"comic_id": "3", "tags": ["t"], "tags": {}},
                                                {"comic_id": "4", "tags": ["t"], "comic_id": {}}]}]})"),
              QStringLiteral("2 -"));
    expectDocumentRefused(R"({"packs": [], "packs": {}})", "has no \"packs\" list");
}

TEST_F(KovalinPacksFile, KnowsTwoPersonStickersByTheirCapability)
{
    const auto path = files.write(QStringLiteral("packs.json"), R"({"packs": [{"stickers": [
        {"comic_id": "1", "tags": ["t"], "capabilities": ["x", "FRIENDS"]},
        {"comic_id": "2", "tags": ["t"], "capabilities": ["friends"]},
        {"comic_id": "3", "tags": ["t"], "capabilities": "FRIENDS"},
        {"comic_id": "4", "tags": ["t"], "capabilities": [["FRIENDS"], {"a": "FRIENDS"}]}]}]})");
    const auto result = searchIn(
        path, {QStringLiteral("--exact"), QStringLiteral("--types"), QStringLiteral("1"), QStringLiteral("t")});
    ASSERT_EQ(result.objects().size(), 1);
    EXPECT_EQ(result.objects()[0][u"stickers"].toArray().size(), 1);
    EXPECT_EQ(result.objects()[0][u"stickers"][0][u"comic_id"], QStringLiteral("1"));
}

TEST_F(KovalinPacksFile, KeepsTextOfAnyKind)
{
    const auto path = files.write(QStringLiteral("packs.json"), R"({"packs": [{"stickers": [
        {"comic_id": "\u00e9\ud83d\ude00\"\\\n\u0000", "url": "日本", "tags": ["naïve 😀"]}]}]})");
    const auto result = searchIn(path, {QStringLiteral("naïve")});
    ASSERT_EQ(result.objects().size(), 1);
    EXPECT_EQ(result.objects()[0][u"stickers"][0][u"comic_id"].toString(), QStringLiteral(u"é😀\"\\\n") + QChar(0));
    EXPECT_EQ(result.objects()[0][u"stickers"][0][u"url"], QStringLiteral("日本"));
    EXPECT_EQ(result.objects()[0][u"tags"], QJsonArray{QStringLiteral("naïve 😀")});
}

TEST_F(KovalinPacksFile, MayBeginWithAByteOrderMarkAndEndWithSpace)
{
    EXPECT_EQ(found("\xEF\xBB\xBF{\"packs\":[{\"stickers\":[{\"comic_id\":\"1\",\"tags\":[\"t\"]}]}]}\r\n\t "),
              QStringLiteral("1"));
}

TEST_F(KovalinPacksFile, MayHoldNoPacksOrNestDeeply)
{
    constexpr int depth = 1'000'000;
    EXPECT_EQ(found("{\"packs\":[]}"), QString());
    const QByteArray nested = QByteArray(depth, '[') + QByteArray(depth, ']');
    const QByteArray deepObject = QByteArray("{\"a\":").repeated(depth) + "0" + QByteArray(depth, '}');
    EXPECT_EQ(found("{\"x\":" + nested + ",\"packs\":[" + nested + ",{\"y\":" + deepObject + ",\"stickers\":[" +
                    nested + ",{\"comic_id\":\"1\",\"url\":" + nested + ",\"tags\":[" + deepObject + ",\"t\"]}]}]}"),
              QStringLiteral("1"));
}

TEST_F(KovalinPacksFile, IsReadUnderAnyName)
{
    const QByteArray document = "{\"packs\":[{\"stickers\":[{\"comic_id\":\"1\",\"tags\":[\"t\"]}]}]}";
    for (const QString& name : {QStringLiteral("[a,b]"), QStringLiteral("näme 😀"), QStringLiteral("two words")}) {
        const auto result = searchIn(files.write(name, document), {QStringLiteral("t")});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.objects().size(), 1);
    }
}

TEST_F(KovalinPacksFile, IsRefusedWhenItCannotBeRead)
{
    expectRefused(files.path(QStringLiteral("missing.json")), "No such file or directory");
    expectRefused(files.path(QStringLiteral(".")), "Is a directory");
    expectRefused(files.path(QStringLiteral("missing folder/packs.json")), "No such file or directory");
    expectRefused(files.write(QStringLiteral("empty.json"), ""), "is empty");

    const QString locked = files.write(QStringLiteral("locked.json"), "{\"packs\":[]}");
    QFile::setPermissions(locked, {});
    if (!QFile(locked).open(QIODevice::ReadOnly)) { // whoever may read everything can't be refused
        expectRefused(locked, "Permission denied");
    }
}

TEST_F(KovalinPacksFile, IsRefusedInOneLineWhateverItsName)
{
    const auto result = searchIn(files.path(QStringLiteral("two\nlines\x1b[31m")), {QStringLiteral("t")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors.count('\n'), 1);
    EXPECT_THAT(result.errors.toStdString(), HasSubstr("two?lines?[31m: No such file or directory\n"));
}

TEST_F(KovalinPacksFile, IsRefusedWhereverItEndsTooEarly)
{
    const QByteArray document =
        "{\"a\":[1,true,null,-2.5e3],\"packs\":[{\"stickers\":[{\"comic_id\":\"\\u00e9\xC3\xA9\"}]}]}";
    for (qsizetype size = 1; size < document.size(); ++size) {
        expectDocumentRefused(document.first(size), "ends too early, at byte " + QByteArray::number(size));
    }
    expectDocumentRefused(" \n", "ends too early, at byte 2");
    expectDocumentRefused("{\"packs\":" + QByteArray(1'000'000, '['), "ends too early, at byte 1000009");
}

TEST_F(KovalinPacksFile, IsRefusedWithThePlaceWhereItIsNotJson)
{
    expectDocumentRefused("hello", "not JSON: invalid literal at byte 1");
    expectDocumentRefused("{packs: []}", "not JSON: invalid literal at byte 2");
    expectDocumentRefused("{\"packs\": [}", "not JSON: unexpected '}' at byte 12");
    expectDocumentRefused("{\"packs\": [],}", "not JSON: unexpected '}' at byte 14");
    expectDocumentRefused("{\"packs\": []} {}", "not JSON: unexpected '{' at byte 15");
    expectDocumentRefused("{\"packs\": []}7", "not JSON: unexpected number literal at byte 14");
    expectDocumentRefused("{\"packs\": [01]}", "not JSON: unexpected number literal at byte 13");
    expectDocumentRefused("{\"a\": 1e999, \"packs\": []}", "not JSON: number out of range at byte 11");
    expectDocumentRefused(
        "{\"a\": \"\\ud800\"}",
        "not JSON: invalid string: surrogate U+D800..U+DBFF must be followed by U+DC00..U+DFFF at byte 14");
    for (const auto* document :
         {"0", "{0\"packs\": []}", "{\"packs\": 0[]}", "{\"packs\": []}0", "{\"packs\": []} 0 {}"}) {
        const QByteArray bytes = QByteArray(document).replace('0', '\0');
        expectDocumentRefused(bytes,
                              "not JSON: unexpected zero byte at byte " + QByteArray::number(bytes.indexOf('\0') + 1));
    }
}

TEST_F(KovalinPacksFile, IsRefusedWithThePlaceWhereItIsNotUtf8)
{
    expectDocumentRefused("{\"a\": \"\xFF\"}", "not valid UTF-8 at byte 8");
    expectDocumentRefused("{\"a\": \"\xC3(\"}", "not valid UTF-8 at byte 9");
    expectDocumentRefused("{\"a\": \"\xED\xA0\x80\"}", "not valid UTF-8 at byte 9"); // a surrogate
    expectDocumentRefused("{\"\xC0\xAF\": 1}", "not valid UTF-8 at byte 3");         // a slash in two bytes
}

TEST_F(KovalinPacksFile, IsRefusedWhenItIsNoDocumentOfPacks)
{
    for (const char* document : {"[]", "[{\"packs\": []}]", "\"packs\"", "7", "null", "true"}) {
        expectDocumentRefused(document, "is no JSON object");
    }
    expectDocumentRefused(QByteArray(1'000'000, '['), "is no JSON object");
    for (const char* document : {"{}", "{\"Packs\": []}", "{\"packs\": {}}", "{\"packs\": null}", "{\"packs\": \"[]\"}",
                                 "{\"a\": {\"packs\": []}}"}) {
        expectDocumentRefused(document, "has no \"packs\" list");
    }
}

} // namespace
