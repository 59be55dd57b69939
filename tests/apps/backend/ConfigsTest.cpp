#include "apps/backend/BackendFixture.h"
#include "platform/dispatch/Gate.h"

#include <QtCore/QJsonObject>

#include <mutex>
#include <vector>

namespace kovalin::test {
namespace {

class Configs : public BackendFixture {
protected:
    [[nodiscard]] TaskEnd ask() { return get(QStringLiteral("/api/configs?client_id=tests")); }
};

TEST_F(Configs, SwitchLearnedSearchOnWithoutAFile)
{
    const TaskEnd end = ask();
    EXPECT_EQ(end.status(), 200);
    EXPECT_EQ(end.response->header("Content-Type"), "application/json");
    EXPECT_EQ(end.data, R"({"ttlSeconds":3600,"configs":{"kovalinLearnedSearch":{"enabled":true}}})");
}

TEST_F(Configs, ComeFromTheFileAsItIsNow)
{
    const QByteArray first = R"({"ttlSeconds": 1, "configs": {}})";
    const QByteArray second = R"({"ttlSeconds":2.5,"configs":{"a":{},"b":{"c":[1,null]}},"more":1})";
    content.write(QStringLiteral("configs.json"), first);
    EXPECT_EQ(ask().data, first);
    content.write(QStringLiteral("configs.json"), second);
    EXPECT_EQ(ask().data, second);
}

TEST_F(Configs, FailWithTheNameOfAFileOfAnotherForm)
{
    for (const char* text : {"", "{", "[]", "{}", R"({"ttlSeconds":"1","configs":{}})", R"({"ttlSeconds":1})",
                             R"({"ttlSeconds":1,"configs":[]})", R"({"ttlSeconds":1,"configs":{"a":true}})", "\xFF"}) {
        content.write(QStringLiteral("configs.json"), text);
        const TaskEnd end = ask();
        EXPECT_EQ(end.status(), 500) << text;
        EXPECT_TRUE(end.data.startsWith(QByteArray(content.path().toUtf8() + "/configs.json: "))) << text;
        EXPECT_EQ(end.data.count('\n'), 1) << text;
    }
}

TEST_F(Configs, FailWhereAFolderStandsInTheFilesPlace)
{
    content.makeFolder(QStringLiteral("configs.json"));
    const TaskEnd end = ask();
    EXPECT_EQ(end.status(), 500);
    EXPECT_TRUE(end.data.endsWith("/configs.json: is no file\n")) << end.data.constData();
}

TEST(ConfigsFault, IsToldToWhoRunsTheBackend)
{
    const ContentFiles content;
    content.write(QStringLiteral("configs.json"), "{");
    std::mutex mutex;
    QString told;
    Gate isTold;
    const backend::Backend server(
        {.contentFolder = content.path(),
         .events = {.requestCame = {}, .metricsCame = {}, .faultFound = [&](const QString& fault) {
                        const std::lock_guard lock(mutex);
                        told = fault;
                        isTold.open();
                    }}});
    platform::UrlSession session(withoutProxy());
    EXPECT_EQ(fetch(session, {.url = server.url(QStringLiteral("/api/configs"))}).status(), 500);
    isTold.wait();
    const std::lock_guard lock(mutex);
    EXPECT_TRUE(told.contains(QStringLiteral("/configs.json: no JSON")));
}

} // namespace
} // namespace kovalin::test
