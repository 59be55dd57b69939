#include "apps/backend/BackendFixture.h"
#include "apps/events/EncodedBatch.h"
#include "kovalin-backend/SizeLimit.h"
#include "support/QtPrinting.h"

#include <QtCore/QJsonArray>

#include <memory>
#include <string>
#include <vector>

namespace kovalin::test {
namespace {

QStringList idsOf(const QList<analytics::Event>& events)
{
    QStringList ids;
    for (const auto& event : events) {
        ids.append(event.id);
    }
    return ids;
}

class Events : public BackendFixture {
protected:
    [[nodiscard]] TaskEnd postBatch(const QByteArray& body) { return post(QStringLiteral("/api/events"), body); }
};

TEST_F(Events, AreTakenInOrder)
{
    const TaskEnd end = postBatch(
        encodedBatch(batchText(eventText("b", shareText("4711")) + eventText("a", "kovalin_kit_hearth_link_tap {}"))));
    EXPECT_EQ(end.status(), 204);
    EXPECT_EQ(end.data, "");
    const auto taken = server.events();
    EXPECT_EQ(taken.batches, 1);
    EXPECT_EQ(taken.received, 2);
    EXPECT_EQ(taken.repeats, 0);
    EXPECT_EQ(taken.dropped, 0U);
    ASSERT_EQ(idsOf(taken.events), (QStringList{QStringLiteral("b"), QStringLiteral("a")}));
    EXPECT_EQ(taken.events[0].batchId, QString::fromLatin1(kBatchId));
    EXPECT_EQ(taken.events[0].timeMillis, 17);
    EXPECT_EQ(taken.events[0].name, QStringLiteral("kovalin_kit_share"));
    EXPECT_EQ(taken.events[0].fields->value(u"sticker_id").toString(), QStringLiteral("4711"));
    EXPECT_EQ(taken.events[1].name, QStringLiteral("kovalin_kit_hearth_link_tap"));
    EXPECT_EQ(taken.events[1].fields, QJsonObject());
}

TEST_F(Events, ThatCameBeforeAreCountedAsRepeats)
{
    const QByteArray first =
        encodedBatch(batchText("dropped: 3 " + eventText("a", shareText("1")) + eventText("b", shareText("2"))));
    EXPECT_EQ(postBatch(first).status(), 204);
    EXPECT_EQ(postBatch(first).status(), 204);
    EXPECT_EQ(postBatch(encodedBatch("batch_id: \"f6f0a0de-5f0a-4a3e-8f2f-0c9e1d1f7a10\" dropped: 4 " +
                                     eventText("b", shareText("9")) + eventText("c", "") + eventText("c", "")))
                  .status(),
              204);
    const auto taken = server.events();
    EXPECT_EQ(taken.batches, 3);
    EXPECT_EQ(taken.received, 3);
    EXPECT_EQ(taken.repeats, 4);
    EXPECT_EQ(taken.dropped, 7U); // the repeated batch tells of the same three
    ASSERT_EQ(idsOf(taken.events), (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    EXPECT_EQ(taken.events[1].fields->value(u"sticker_id").toString(), QStringLiteral("2"));
}

TEST_F(Events, MayBeNone)
{
    EXPECT_EQ(postBatch(encodedBatch(batchText("dropped: 1"))).status(), 204);
    EXPECT_EQ(server.events().batches, 1);
    EXPECT_EQ(server.events().dropped, 1U);
    EXPECT_TRUE(server.events().events.isEmpty());
}

TEST_F(Events, ThatTheFormatDoesNotDeclareAreTakenToo)
{
    EXPECT_EQ(postBatch(encodedLaterBatch(batchText(eventText("a", "preview_sticker_id: \"4711\"")))).status(), 204);
    const auto taken = server.events();
    ASSERT_EQ(taken.events.size(), 1);
    ASSERT_EQ(taken.events[0].unknown.size(), 1);
    EXPECT_EQ(taken.events[0].unknown[0].number, 2);
    EXPECT_EQ(taken.events[0].unknown[0].value.toString(), QStringLiteral("4711"));
}

TEST_F(Events, AreShownAsJson)
{
    EXPECT_EQ(postBatch(encodedBatch(batchText("dropped: 2 " + eventText("a", shareText("9")) + eventText("b", "") +
                                               eventText("a", shareText("9")))))
                  .status(),
              204);
    const QJsonObject shown = objectIn(get(QStringLiteral("/control/events")));
    EXPECT_EQ(shown.value(u"batches").toInt(), 1);
    EXPECT_EQ(shown.value(u"received").toInt(), 2);
    EXPECT_EQ(shown.value(u"repeats").toInt(), 1);
    EXPECT_EQ(shown.value(u"dropped").toInt(), 2);
    const QJsonArray events = shown.value(u"events").toArray();
    ASSERT_EQ(events.size(), 2);
    const QByteArray expected = QByteArray(R"({"batch_id":")") + kBatchId +
                                R"(","event_id":"a","time_millis":17,"event":"kovalin_kit_share",)"
                                R"("fields":{"sticker_id":"9","share_category":1}})";
    EXPECT_EQ(events[0].toObject(), QJsonDocument::fromJson(expected).object());
    EXPECT_TRUE(events[1].toObject().value(u"event").isNull());
}

TEST_F(Events, AreTakenFromManyConnectionsAtOnce)
{
    constexpr int sessionCount = 8;
    std::vector<std::unique_ptr<platform::UrlSession>> sessions;
    std::vector<TaskEndBox> boxes;
    for (int i = 0; i < sessionCount; ++i) {
        // One event of its own, and one that all of them bring.
        const QByteArray body = encodedBatch(
            batchText(eventText("own " + QByteArray::number(i), shareText("1")) + eventText("common", shareText("2"))));
        sessions.push_back(std::make_unique<platform::UrlSession>(withoutProxy()));
        sessions.back()
            ->dataTask({.url = server.url(QStringLiteral("/api/events")),
                        .method = platform::UrlRequest::Method::Post,
                        .body = body},
                       boxes.emplace_back().handler())
            ->resume();
    }
    for (const TaskEndBox& box : boxes) {
        EXPECT_EQ(box.wait().status(), 204);
    }
    const auto taken = server.events();
    EXPECT_EQ(taken.batches, sessionCount);
    EXPECT_EQ(taken.received, sessionCount + 1);
    EXPECT_EQ(taken.repeats, sessionCount - 1);
}

TEST_F(Events, AreNotTakenWhereTheAnswerShallFail)
{
    const QByteArray body = encodedBatch(batchText(eventText("a", shareText("1"))));
    rule("/api/events 503 retry-after 7");
    EXPECT_EQ(postBatch(body).status(), 503);
    EXPECT_EQ(server.events().batches, 0);
    rule("/api/events garbage");
    EXPECT_EQ(postBatch(body).data.size(), 64);
    EXPECT_EQ(server.events().batches, 0);
    rule("/api/events ok");
    EXPECT_EQ(postBatch(body).status(), 204);
    EXPECT_EQ(server.events().received, 1);
}

TEST_F(Events, ComeByPostAlone)
{
    EXPECT_EQ(get(QStringLiteral("/api/events")).status(), 405);
    EXPECT_EQ(post(QStringLiteral("/control/events"), {}).status(), 405);
}

TEST_F(Events, OfABodyThatIsTooLongAreRefused)
{
    EXPECT_EQ(postBatch(QByteArray(10 * 1024 * 1024, 'x')).status(), 413);
    EXPECT_EQ(postBatch(QByteArray("\x38\x01").repeated(backend::kMostBodyBytes / 2)).status(), 400);
    EXPECT_EQ(server.events().batches, 0);
}

struct BadEventBatch {
    const char* name;
    const char* text; // empty where the bytes are given
    QByteArray bytes;
    const char* fault;
};

class BadEvents : public BackendFixture, public testing::WithParamInterface<BadEventBatch> {};

TEST_P(BadEvents, AreRefusedWholeAndSaidWhy)
{
    const BadEventBatch& bad = GetParam();
    const QByteArray text = bad.text;
    const TaskEnd end =
        post(QStringLiteral("/api/events"), text.isEmpty() ? bad.bytes : QByteArray(encodedBatch(text) + bad.bytes));
    EXPECT_EQ(end.status(), 400);
    EXPECT_THAT(end.data.toStdString(), testing::EndsWith(std::string(bad.fault) + '\n'));
    EXPECT_EQ(end.data.count('\n'), 1);
    EXPECT_EQ(server.events().batches, 0);
    EXPECT_TRUE(server.events().events.isEmpty());
}

const BadEventBatch badBatches[] = {
    {"Empty", "", "", "no \"batch_id\""},
    {"NoProtobuf", "", "batch_id=1", "field 12: a length of 97 goes beyond the end, at byte 2"},
    {"NoBatchId", "events { event_id: \"a\" }", "", "no \"batch_id\""},
    {"BatchIdNoUuid", "batch_id: \"x\" events { event_id: \"a\" }", "", "\"batch_id\" is no UUID"},
    {"NoEventId",
     "batch_id: \"2f1e0ffb-2f83-4a6a-9d9c-3b6b5f7c0d11\" events { event_id: \"a\" } events { time_millis: 1 }", "",
     "events#2: no \"event_id\""},
    {"CutEvent", "batch_id: \"2f1e0ffb-2f83-4a6a-9d9c-3b6b5f7c0d11\"", "\x1a\x05\x0a",
     "events#1: a length of 5 goes beyond the end, at byte 40"},
    {"NoUtf8", "batch_id: \"2f1e0ffb-2f83-4a6a-9d9c-3b6b5f7c0d11\"", "\x1a\x03\x0a\x01\xff",
     "events#1.event_id: no valid UTF-8, at byte 42"},
    {"Deep", "batch_id: \"2f1e0ffb-2f83-4a6a-9d9c-3b6b5f7c0d11\"", QByteArray(100'000, '\x4b'),
     "more than 64 levels, at byte 103"},
};

INSTANTIATE_TEST_SUITE_P(Backend, BadEvents, testing::ValuesIn(badBatches),
                         [](const auto& batch) { return std::string(batch.param.name); });

} // namespace
} // namespace kovalin::test
