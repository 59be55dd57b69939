#include "apps/backend/BackendFixture.h"
#include "apps/backend/RawClient.h"

#include <QtCore/QJsonObject>

namespace kovalin::test {
namespace {

class ModelEndpoints : public BackendFixture {
protected:
    [[nodiscard]] QJsonObject status(const QString& clientVersion)
    {
        return objectIn(get(QStringLiteral("/content/models/LearnedSearch?client_cached_version=") + clientVersion));
    }

    [[nodiscard]] QJsonObject answerWithVersion(bool shouldUpdate, int version) const
    {
        return {{QStringLiteral("shouldUpdate"), shouldUpdate},
                {QStringLiteral("modelUrl"),
                 server.url(QStringLiteral("/content/models/LearnedSearch/%1").arg(version)).toString()},
                {QStringLiteral("modelVersion"), version}};
    }

    void writeVersion(int version, const QByteArray& bytes = "model")
    {
        content.write(QStringLiteral("models/LearnedSearch/%1.bin").arg(version), bytes);
    }
};

TEST_F(ModelEndpoints, TellTheNewestVersionToAClientWithAnOlderOne)
{
    writeVersion(2);
    writeVersion(10);
    writeVersion(9);
    EXPECT_EQ(status(QStringLiteral("9")), answerWithVersion(true, 10));
}

TEST_F(ModelEndpoints, TellTheNewestVersionButNoUpdateToAClientThatHasIt)
{
    writeVersion(10);
    EXPECT_EQ(status(QStringLiteral("10")), answerWithVersion(false, 10));
    EXPECT_EQ(status(QStringLiteral("11")), answerWithVersion(false, 10));
    EXPECT_EQ(status(QStringLiteral("99999999999")), answerWithVersion(false, 10));
}

TEST_F(ModelEndpoints, TakeAVersionThatIsNoneForNone)
{
    writeVersion(1);
    for (const char* version : {"-1", "(null)", "", "x", "1.5", "99999999999999999999"}) {
        EXPECT_EQ(status(QString::fromLatin1(version)), answerWithVersion(true, 1)) << version;
    }
    EXPECT_EQ(objectIn(get(QStringLiteral("/content/models/LearnedSearch"))), answerWithVersion(true, 1));
    EXPECT_EQ(objectIn(get(QStringLiteral("/content/models/LearnedSearch?other=1"))), answerWithVersion(true, 1));
}

TEST_F(ModelEndpoints, SayNoUpdateWhereAModelHasNoVersion)
{
    content.makeFolder(QStringLiteral("models/LearnedSearch"));
    EXPECT_EQ(status(QStringLiteral("-1")), (QJsonObject{{QStringLiteral("shouldUpdate"), false}}));
}

TEST_F(ModelEndpoints, DontKnowOtherModels)
{
    writeVersion(1);
    content.write(QStringLiteral("models/file"), "no folder");
    for (const char* name : {"Other", "learnedsearch", "file", "..", "%2E%2E", "LearnedSearch%2F..", ".", ""}) {
        const TaskEnd end = get(QStringLiteral("/content/models/") + QString::fromLatin1(name));
        EXPECT_EQ(end.status(), 404) << name;
    }
}

TEST_F(ModelEndpoints, DontKnowAnyModelInAnEmptyFolder)
{
    EXPECT_EQ(get(QStringLiteral("/content/models/LearnedSearch")).status(), 404);
    EXPECT_EQ(get(QStringLiteral("/content/models/LearnedSearch/1")).status(), 404);
}

TEST_F(ModelEndpoints, SeeAVersionThatIsDroppedInWhileRunning)
{
    writeVersion(1);
    EXPECT_EQ(status(QStringLiteral("1")), answerWithVersion(false, 1));
    writeVersion(2, "newer");
    EXPECT_EQ(status(QStringLiteral("1")), answerWithVersion(true, 2));
    EXPECT_EQ(get(QStringLiteral("/content/models/LearnedSearch/2")).data, "newer");
}

TEST_F(ModelEndpoints, IgnoreFilesThatAreNoVersion)
{
    writeVersion(3);
    for (const char* name : {"0.bin", "-4.bin", "+4.bin", "004.bin", "4x.bin", "4.BIN", "4", "4.bin.part", "4.5.bin",
                             "2147483648.bin", "99999999999.bin", ".bin"}) {
        content.write(QStringLiteral("models/LearnedSearch/") + QString::fromLatin1(name), "no version");
    }
    content.makeFolder(QStringLiteral("models/LearnedSearch/7.bin"));
    EXPECT_EQ(status(QStringLiteral("-1")), answerWithVersion(true, 3));
}

TEST_F(ModelEndpoints, SendTheModelByteForByte)
{
    QByteArray bytes;
    for (int i = 0; i < 300'000; ++i) {
        bytes.append(static_cast<char>(i * 31));
    }
    writeVersion(5, bytes);
    const auto url = status(QStringLiteral("4")).value(u"modelUrl").toString();
    const TaskEnd end = fetch(session, {.url = QUrl(url)});
    EXPECT_EQ(end.status(), 200);
    EXPECT_TRUE(end.data == bytes);
    EXPECT_EQ(end.response->header("Content-Length"), QByteArray::number(bytes.size()));
}

TEST_F(ModelEndpoints, SendAnEmptyModelAndAnOldOne)
{
    writeVersion(5, "");
    writeVersion(6);
    const TaskEnd end = get(QStringLiteral("/content/models/LearnedSearch/5"));
    EXPECT_EQ(end.status(), 200);
    EXPECT_EQ(end.data, "");
}

TEST_F(ModelEndpoints, DontSendWhatIsNoVersion)
{
    writeVersion(5);
    content.write(QStringLiteral("models/LearnedSearch/005.bin"), "other");
    content.write(QStringLiteral("models/secret.bin"), "secret");
    for (const char* version : {"4", "05", "005", "5.bin", "+5", "..%2Fsecret", "..", "", "5/"}) {
        EXPECT_EQ(get(QStringLiteral("/content/models/LearnedSearch/") + QString::fromLatin1(version)).status(), 404)
            << version;
    }
}

TEST_F(ModelEndpoints, DontFollowDotsThatAClientSendsAsTheyStand)
{
    content.write(QStringLiteral("configs.json"), "secret");
    for (const char* path : {"/content/models/../configs.json", "/content/models/../../etc/passwd", "//etc/passwd",
                             "/content/models/LearnedSearch/../../configs.json", "/content//models/LearnedSearch"}) {
        RawClient client(server.baseUrl());
        client.send(QByteArray("GET ") + path + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
        EXPECT_TRUE(client.readToEnd().startsWith("HTTP/1.1 404 ")) << path;
    }
}

TEST_F(ModelEndpoints, NameAModelInAnAddressThatLeadsBackToIt)
{
    const QString name = QStringLiteral("a b%2F#ä?");
    content.write(QStringLiteral("models/") + name + QStringLiteral("/3.bin"), "odd");
    const QString path = QStringLiteral("/content/models/") + QString::fromLatin1(QUrl::toPercentEncoding(name));
    const QJsonObject answer = objectIn(get(path));
    EXPECT_EQ(answer.value(u"modelVersion").toInt(), 3);
    EXPECT_EQ(fetch(session, {.url = QUrl(answer.value(u"modelUrl").toString())}).data, "odd");
}

TEST_F(ModelEndpoints, NameAModelThatCantBeRead)
{
    // A file that can be opened, but not read from its start.
    content.makeFolder(QStringLiteral("models/LearnedSearch"));
    ASSERT_TRUE(
        QFile::link(QStringLiteral("/proc/self/mem"), content.path() + QStringLiteral("/models/LearnedSearch/5.bin")));
    const TaskEnd end = get(QStringLiteral("/content/models/LearnedSearch/5"));
    EXPECT_EQ(end.status(), 500);
    EXPECT_TRUE(end.data.contains("models/LearnedSearch/5.bin: "));
}

} // namespace
} // namespace kovalin::test
