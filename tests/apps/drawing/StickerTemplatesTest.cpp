#include "kovalin-backend/drawing/StickerTemplates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kovalin::drawing;

namespace {

std::string faultOf(const QByteArray& json)
{
    try {
        const StickerTemplates templates(json, QStringLiteral("templates.json"));
    } catch (const StickerTemplates::BadTemplates& error) {
        return error.what();
    }
    return "";
}

std::string faultOfEntry(const QByteArray& entry)
{
    return faultOf("{\"templates\": [{\"id\": \"good\", \"expression\": \"calm\"}, " + entry + "]}");
}

TEST(StickerTemplates, AreReadInOrder)
{
    const StickerTemplates templates(
        R"({"templates": [{"id": "b", "expression": "joy", "prop": "mug", "motifs": ["disc", "hearts"], "palette": "sky",
            "caption": "hi", "lettering": "wave"}, {"id": "a", "expression": "calm"}]})",
        QStringLiteral("templates.json"));
    ASSERT_EQ(templates.all().size(), 2U);
    EXPECT_EQ(templates.all()[0].id, QStringLiteral("b"));
    const StickerTemplate* const found = templates.find(QStringLiteral("b"));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->caption, QStringLiteral("hi"));
    EXPECT_EQ(found->lettering, Lettering::Wave);
    EXPECT_EQ(found->motifs.size(), 2U);
    ASSERT_TRUE(found->role.gesture); // the prop's
    EXPECT_EQ(found->role.gesture->name, "hold");
    EXPECT_EQ(templates.find(QStringLiteral("c")), nullptr);
}

TEST(StickerTemplates, TakeGesturesFromThePose)
{
    const StickerTemplates templates(
        R"({"templates": [{"id": "x", "expression": "joy", "pose": "high-five", "friend": {"expression": "calm"}}]})",
        QStringLiteral("t"));
    const StickerTemplate& read = templates.all().front();
    ASSERT_TRUE(read.pair);
    EXPECT_EQ(read.role.gesture->name, "five");
    EXPECT_EQ(read.pair->friendRole.gesture->name, "five");
}

TEST(StickerTemplates, NameTheFileThatIsNoJson)
{
    EXPECT_THAT(faultOf("{\"templates\": ["), testing::StartsWith("templates.json: not JSON: "));
    EXPECT_EQ(faultOf("[]"), "templates.json: \"templates\" is no list");
    EXPECT_EQ(faultOf("{\"templates\": {}}"), "templates.json: \"templates\" is no list");
}

TEST(StickerTemplates, NameTheEntryThatIsWrong)
{
    EXPECT_EQ(faultOfEntry("7"), "templates.json: template 2: is no object");
    EXPECT_EQ(faultOfEntry("{}"), "templates.json: template 2: \"id\" is missing");
    EXPECT_EQ(faultOfEntry(R"({"id": 3})"), "templates.json: template 2: \"id\" is no text");
    EXPECT_EQ(faultOfEntry(R"({"id": "x"})"), "templates.json: template 2 \"x\": \"expression\" is missing");
    EXPECT_EQ(faultOfEntry(R"({"id": "good", "expression": "calm"})"),
              "templates.json: template 2 \"good\": the id is there already");
}

TEST(StickerTemplates, NameTheWordThatIsUnknown)
{
    const auto faultWith = [](const char* more) {
        return faultOfEntry(QByteArrayLiteral(R"({"id": "x", "expression": "calm", )") + more + "}");
    };
    const std::string start = "templates.json: template 2 \"x\": ";
    EXPECT_EQ(faultWith(R"("gesture": "fly")"), start + "there is no gesture \"fly\"");
    EXPECT_EQ(faultWith(R"("prop": "ufo")"), start + "there is no prop \"ufo\"");
    EXPECT_EQ(faultWith(R"("stance": "crawl")"), start + "there is no stance \"crawl\"");
    EXPECT_EQ(faultWith(R"("palette": "beige")"), start + "there is no palette \"beige\"");
    EXPECT_EQ(faultWith(R"("lettering": "gothic")"), start + "there is no lettering \"gothic\"");
    EXPECT_EQ(faultWith(R"("motifs": ["disc", "dics"])"), start + "there is no motif \"dics\"");
    EXPECT_EQ(faultWith(R"("motifs": "disc")"), start + "\"motifs\" is no list");
    EXPECT_EQ(faultWith(R"("captoin": "hi")"), start + "\"captoin\" is no key of a template");
    EXPECT_EQ(faultWith(R"("friend": {"expression": "calm"})"), start + "\"friend\" and \"shared\" take a \"pose\"");
    EXPECT_EQ(faultWith(R"("pose": "side")"), start + "\"pose\" takes a \"friend\"");
    EXPECT_EQ(faultWith(R"("pose": "side", "friend": {"expression": "clam"})"),
              start + "there is no expression \"clam\"");
}

TEST(StickerTemplates, NameTheFileThatCantBeRead)
{
    try {
        [[maybe_unused]] const auto templates = StickerTemplates::fromFile(QStringLiteral("/no/such/templates.json"));
        FAIL();
    } catch (const StickerTemplates::BadTemplates& error) {
        EXPECT_THAT(error.what(), testing::StartsWith("/no/such/templates.json: "));
    }
}

} // namespace
