#include "kits/core/default/KnownConfigs.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>

namespace kovalin::kits {
namespace {

using namespace std::chrono_literals;

const ConfigSource source{.clientId = QStringLiteral("a client"), .apiBaseUrl = QStringLiteral("https://host/api")};
constexpr qint64 then = 1'600'000'000'000;

KnownConfigsPtr read(const QByteArray& answer)
{
    return configsInAnswer(answer, source, then);
}

bool isEnabled(const KnownConfigsPtr& known, const QString& name, bool otherwise)
{
    const auto config = known->configs.value(name);
    return config && config->boolValue({QStringLiteral("enabled")}, otherwise);
}

TEST(KnownConfigs, ReadsAnAnswer)
{
    const auto known = read(R"({"ttlSeconds":120,"configs":{"a":{"enabled":true},"b":{"enabled":false},"c":{}}})");
    ASSERT_NE(known, nullptr);
    EXPECT_EQ(known->source, source);
    EXPECT_EQ(known->fetchedAt, then);
    EXPECT_EQ(known->ttl, 120s);
    EXPECT_EQ(known->configs.size(), 3);
    EXPECT_TRUE(isEnabled(known, QStringLiteral("a"), false));
    EXPECT_FALSE(isEnabled(known, QStringLiteral("b"), true));
    EXPECT_TRUE(isEnabled(known, QStringLiteral("c"), true));
}

TEST(KnownConfigs, LeavesOutWhatIsNoObject)
{
    const auto known = read(R"({"configs":{"a":{},"b":true,"c":null,"d":[{}],"e":"{}","":{"enabled":true}}})");
    ASSERT_NE(known, nullptr);
    EXPECT_EQ(known->configs.size(), 2);
    EXPECT_TRUE(isEnabled(known, QString::fromLatin1(""), false));
    EXPECT_EQ(known->values.size(), 2);
}

TEST(KnownConfigs, ClampsTheTimeToLive)
{
    const std::map<QByteArray, std::chrono::milliseconds> ttls = {
        {"60", 60s},     {"61.5", 61500ms},   {"59", 60s},         {"0", 60s},         {"-1", 60s},
        {"-1e300", 60s}, {"604800", 7 * 24h}, {"604801", 7 * 24h}, {"1e300", 7 * 24h}, {"null", 1h},
        {"\"120\"", 1h}, {"true", 1h},        {"[120]", 1h},
    };
    for (const auto& [text, ttl] : ttls) {
        const auto known = read("{\"configs\":{},\"ttlSeconds\":" + text + "}");
        ASSERT_NE(known, nullptr) << text.constData();
        EXPECT_EQ(known->ttl, ttl) << text.constData();
    }
    EXPECT_EQ(read(R"({"configs":{}})")->ttl, 1h);
}

TEST(KnownConfigs, AreNoneInAnythingElse)
{
    for (const QByteArray& answer :
         {QByteArray(), QByteArray("{}"), QByteArray("[]"), QByteArray("null"), QByteArray("<html>"),
          QByteArray(R"({"configs":null})"), QByteArray(R"({"configs":[]})"), QByteArray(R"({"configs":{})"),
          QByteArray(R"({"configs":{}}x)"), QByteArray(R"([{"configs":{}}])"), QByteArray("\xff\xfe{}")}) {
        EXPECT_EQ(read(answer), nullptr) << answer.constData();
    }
}

TEST(KnownConfigs, AreFreshForTheirTimeToLiveAndNotBeforeTheyCame)
{
    const auto known = read(R"({"configs":{},"ttlSeconds":60})");
    EXPECT_TRUE(known->areFresh(then));
    EXPECT_TRUE(known->areFresh(then + 59'999));
    EXPECT_FALSE(known->areFresh(then + 60'000));
    EXPECT_FALSE(known->areFresh(then - 1));
}

TEST(KnownConfigs, ComeBackFromTheirStoredForm)
{
    const auto known = read(R"({"configs":{"a":{"enabled":true,"\u00e4":[1,{}]}},"ttlSeconds":90.5})");
    const auto restored = configsInStoredForm(storedForm(*known));
    ASSERT_NE(restored, nullptr);
    EXPECT_EQ(restored->source, known->source);
    EXPECT_EQ(restored->fetchedAt, then);
    EXPECT_EQ(restored->ttl, 90500ms);
    EXPECT_EQ(restored->values, known->values);
    EXPECT_TRUE(isEnabled(restored, QStringLiteral("a"), false));
}

TEST(KnownConfigs, AreNoneInADamagedStoredForm)
{
    const QByteArray stored = storedForm(*read(R"({"configs":{"a":{"enabled":true}}})"));
    for (qsizetype size = 0; size < stored.size(); ++size) {
        EXPECT_EQ(configsInStoredForm(stored.first(size)), nullptr) << size;
    }
    for (const char* const field : {"format", "clientId", "apiBaseUrl", "fetchedAt", "ttlSeconds", "configs"}) {
        EXPECT_EQ(configsInStoredForm(QByteArray(stored).replace(field, "other")), nullptr) << field;
    }
    EXPECT_EQ(configsInStoredForm(QByteArray(stored).replace("\"format\":1", "\"format\":2")), nullptr);
    EXPECT_EQ(configsInStoredForm(QByteArray(stored).replace("1600000000000", "1e300")), nullptr);
}

TEST(KnownConfigs, SurviveAnyWrongByteInTheirStoredForm)
{
    const QByteArray stored = storedForm(*read(R"({"configs":{"a":{"enabled":true}},"ttlSeconds":90})"));
    for (qsizetype i = 0; i < stored.size(); ++i) {
        for (const unsigned bit : {0x01U, 0x10U, 0x80U}) {
            QByteArray damaged = stored;
            damaged[i] = static_cast<char>(static_cast<unsigned char>(damaged[i]) ^ bit);
            if (const auto known = configsInStoredForm(damaged)) {
                EXPECT_GE(known->ttl, 60s);
                EXPECT_LE(known->ttl, 7 * 24h);
            }
        }
    }
}

} // namespace
} // namespace kovalin::kits
