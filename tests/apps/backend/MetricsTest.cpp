#include "apps/backend/BackendFixture.h"
#include "kovalin-backend/MetricsBatch.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <limits>
#include <string>

namespace kovalin::test {
namespace {

using backend::MetricsEntry;

constexpr const char* batchId = "2f1e0ffb-2f83-4a6a-9d9c-3b6b5f7c0d11";

/// A batch of these entries, given as JSON.
QByteArray batchOf(const QByteArray& entries)
{
    return QByteArray(R"({"client_id":"tests","batch_id":")") + batchId + R"(","entries":[)" + entries + "]}";
}

QByteArray count(const QByteArray& id, const QByteArray& value = "3")
{
    return R"({"id":")" + id + R"(","type":"count","name":"1_0:kovalin:picker:open","value":)" + value +
           R"(,"time":17})";
}

QByteArray latency(const QByteArray& id, const QByteArray& milliseconds = "12.5")
{
    return R"({"id":")" + id + R"(","type":"latency","name":"request:packs","milliseconds":)" + milliseconds +
           R"(,"time":18})";
}

class Metrics : public BackendFixture {
protected:
    [[nodiscard]] TaskEnd postBatch(const QByteArray& body) { return post(QStringLiteral("/api/metrics"), body); }
};

TEST_F(Metrics, AreTakenInOrder)
{
    const TaskEnd end = postBatch(batchOf(count("a") + ',' + latency("b")));
    EXPECT_EQ(end.status(), 204);
    EXPECT_EQ(end.data, "");
    const auto taken = server.metrics();
    EXPECT_EQ(taken.batches, 1);
    EXPECT_EQ(taken.repeats, 0);
    const MetricsEntry common{.clientId = QStringLiteral("tests"), .batchId = QString::fromLatin1(batchId)};
    MetricsEntry first = common;
    first.id = QStringLiteral("a");
    first.name = QStringLiteral("1_0:kovalin:picker:open");
    first.value = 3;
    first.timeMillis = 17;
    MetricsEntry second = common;
    second.id = QStringLiteral("b");
    second.kind = MetricsEntry::Kind::Latency;
    second.name = QStringLiteral("request:packs");
    second.milliseconds = 12.5;
    second.timeMillis = 18;
    EXPECT_EQ(taken.entries, (QList{first, second}));
}

TEST_F(Metrics, ThatCameBeforeAreCountedAsRepeats)
{
    EXPECT_EQ(postBatch(batchOf(count("a") + ',' + count("b"))).status(), 204);
    EXPECT_EQ(postBatch(batchOf(count("b", "99") + ',' + count("c") + ',' + count("c"))).status(), 204);
    const auto taken = server.metrics();
    EXPECT_EQ(taken.batches, 2);
    EXPECT_EQ(taken.repeats, 2);
    ASSERT_EQ(taken.entries.size(), 3);
    EXPECT_EQ(taken.entries[1].value, 3);
    EXPECT_EQ(taken.entries[2].id, QStringLiteral("c"));
}

TEST_F(Metrics, MayBeNone)
{
    EXPECT_EQ(postBatch(batchOf("")).status(), 204);
    EXPECT_EQ(server.metrics().batches, 1);
    EXPECT_TRUE(server.metrics().entries.isEmpty());
}

TEST_F(Metrics, KeepIntegersExact)
{
    EXPECT_EQ(postBatch(batchOf(count("a", "9223372036854775807") + ',' + count("b", "-9223372036854775808") + ',' +
                                count("c", "5.0")))
                  .status(),
              204);
    const auto entries = server.metrics().entries;
    ASSERT_EQ(entries.size(), 3);
    EXPECT_EQ(entries[0].value, std::numeric_limits<qint64>::max());
    EXPECT_EQ(entries[1].value, std::numeric_limits<qint64>::min());
    EXPECT_EQ(entries[2].value, 5);
}

TEST_F(Metrics, AreShownAsJson)
{
    EXPECT_EQ(postBatch(batchOf(count("a") + ',' + latency("b") + ',' + count("a"))).status(), 204);
    const QJsonObject shown = objectIn(get(QStringLiteral("/control/metrics")));
    EXPECT_EQ(shown.value(u"batches").toInt(), 1);
    EXPECT_EQ(shown.value(u"repeats").toInt(), 1);
    EXPECT_EQ(shown.value(u"count").toInt(), 2);
    const QJsonArray entries = shown.value(u"entries").toArray();
    ASSERT_EQ(entries.size(), 2);
    EXPECT_EQ(entries[0].toObject(), (QJsonObject{{QStringLiteral("client_id"), QStringLiteral("tests")},
                                                  {QStringLiteral("batch_id"), QString::fromLatin1(batchId)},
                                                  {QStringLiteral("id"), QStringLiteral("a")},
                                                  {QStringLiteral("type"), QStringLiteral("count")},
                                                  {QStringLiteral("name"), QStringLiteral("1_0:kovalin:picker:open")},
                                                  {QStringLiteral("value"), 3},
                                                  {QStringLiteral("time"), 17}}));
    EXPECT_EQ(entries[1].toObject().value(u"type").toString(), QStringLiteral("latency"));
    EXPECT_EQ(entries[1].toObject().value(u"milliseconds").toDouble(), 12.5);
}

struct BadBatch {
    const char* name;
    QByteArray body;
    const char* fault;
};

class BadMetrics : public BackendFixture, public testing::WithParamInterface<BadBatch> {};

TEST_P(BadMetrics, AreRefusedWholeAndSaidWhy)
{
    const TaskEnd end = post(QStringLiteral("/api/metrics"), GetParam().body);
    EXPECT_EQ(end.status(), 400);
    EXPECT_THAT(end.data.toStdString(), testing::StartsWith(GetParam().fault));
    EXPECT_EQ(end.data.count('\n'), 1);
    EXPECT_EQ(server.metrics().batches, 0);
    EXPECT_TRUE(server.metrics().entries.isEmpty());
}

const BadBatch badBatches[] = {
    {"Empty", "", "no JSON: "},
    {"NoJson", "client_id=1", "no JSON: "},
    {"CutJson", R"({"client_id":"tests")", "no JSON: "},
    {"List", "[]", "no JSON object"},
    {"NoClient", R"({"batch_id":"x","entries":[]})", "\"client_id\" is no text"},
    {"ClientNumber", R"({"client_id":1,"batch_id":"x","entries":[]})", "\"client_id\" is no text"},
    {"NoBatch", R"({"client_id":"c","entries":[]})", "\"batch_id\" is no text"},
    {"BatchNoUuid", R"({"client_id":"c","batch_id":"x","entries":[]})", "\"batch_id\" is no UUID"},
    {"NoEntries", R"({"client_id":"c","batch_id":"2f1e0ffb-2f83-4a6a-9d9c-3b6b5f7c0d11"})", "\"entries\" is no list"},
    {"EntryNoObject", batchOf(count("a") + ",1"), "entry 2: is no object"},
    {"NoId", batchOf(R"({"type":"count","name":"n","value":1,"time":1})"), "entry 1: \"id\" is no text"},
    {"IdNumber", batchOf(R"({"id":1,"type":"count","name":"n","value":1,"time":1})"), "entry 1: \"id\" is no text"},
    {"IdEmpty", batchOf(count("")), "entry 1: \"id\" is empty"},
    {"OtherType", batchOf(R"({"id":"a","type":"gauge","name":"n","value":1,"time":1})"),
     "entry 1: \"type\" is neither \"count\" nor \"latency\""},
    {"NameNull", batchOf(R"({"id":"a","type":"count","name":null,"value":1,"time":1})"),
     "entry 1: \"name\" is no text"},
    {"ValueText", batchOf(count("a", R"("1")")), "entry 1: \"value\" is no integer"},
    {"ValueFraction", batchOf(count("a", "1.5")), "entry 1: \"value\" is no integer"},
    {"ValueHuge", batchOf(count("a", "1e300")), "entry 1: \"value\" is no integer"},
    {"NoMilliseconds", batchOf(R"({"id":"a","type":"latency","name":"n","value":1,"time":1})"),
     "entry 1: \"milliseconds\" is no number"},
    {"NoTime", batchOf(R"({"id":"a","type":"count","name":"n","value":1})"), "entry 1: \"time\" is no integer"},
};

INSTANTIATE_TEST_SUITE_P(Backend, BadMetrics, testing::ValuesIn(badBatches),
                         [](const auto& batch) { return std::string(batch.param.name); });

} // namespace
} // namespace kovalin::test
