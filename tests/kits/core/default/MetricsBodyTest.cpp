#include "kits/core/default/MetricsBody.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>

namespace kovalin::kits {
namespace {

using nlohmann::json;

const QUuid first(QStringLiteral("{11111111-2222-3333-4444-555555555555}"));
const QUuid second(QStringLiteral("{aaaaaaaa-bbbb-cccc-dddd-eeeeeeeeeeee}"));

json parse(const QByteArray& bytes)
{
    return json::parse(bytes.toStdString());
}

TEST(MetricsBody, IsWhatAServerExpects)
{
    const OutboxBatch batch{.id = second,
                            .entries = {{.id = first, .time = 5, .bytes = countEntry(3, QStringLiteral("a:b"), 5)},
                                        {.id = second, .time = 7, .bytes = latencyEntry(1.25, QStringLiteral("c"), 7)}},
                            .dropped = 4};
    EXPECT_EQ(parse(metricsBody(batch, QStringLiteral("me"))), json::parse(R"({
        "client_id": "me", "batch_id": "aaaaaaaa-bbbb-cccc-dddd-eeeeeeeeeeee", "dropped": 4, "entries": [
            {"id": "11111111-2222-3333-4444-555555555555", "type": "count", "name": "a:b", "value": 3, "time": 5},
            {"id": "aaaaaaaa-bbbb-cccc-dddd-eeeeeeeeeeee", "type": "latency", "name": "c", "milliseconds": 1.25, "time": 7}]
    })"));
}

TEST(MetricsBody, KeepsLargeNumbersAndAnyText)
{
    for (const qint64 count : {std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min(), qint64(0)}) {
        EXPECT_EQ(parse(countEntry(count, QStringLiteral("n"), 0))["value"].get<qint64>(), count);
    }
    for (const double milliseconds : {0.0, 1e-300, 0.1, 1.7976931348623157e308}) {
        EXPECT_EQ(parse(latencyEntry(milliseconds, QStringLiteral("n"), 0))["milliseconds"].get<double>(),
                  milliseconds);
    }
    const QString name = QStringLiteral("\"\\ \n\t \u00e4 \u2028 \U0001F600");
    EXPECT_EQ(parse(countEntry(1, name, 0))["name"].get<std::string>(), name.toStdString());
}

} // namespace
} // namespace kovalin::kits
