#include "apps/backend/BackendFixture.h"
#include "apps/backend/RawClient.h"
#include "kovalin-backend/SizeLimit.h"

namespace kovalin::test {
namespace {

using backend::kMostBodyBytes;

class RequestLimit : public BackendFixture {
protected:
    [[nodiscard]] TaskEnd postBytes(qint64 count)
    {
        return post(QStringLiteral("/api/metrics"), QByteArray(count, 'x'));
    }
};

TEST_F(RequestLimit, LetsTheLongestBodyThrough)
{
    EXPECT_EQ(postBytes(kMostBodyBytes).status(), 400);
    EXPECT_EQ(server.requests().back().body.size(), kMostBodyBytes);
}

TEST_F(RequestLimit, RefusesABodyThatIsLongerByAByte)
{
    EXPECT_EQ(postBytes(kMostBodyBytes + 1).status(), 413);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(RequestLimit, RefusesABodyThatIsMuchLonger)
{
    EXPECT_EQ(postBytes(8 * kMostBodyBytes).status(), 413);
    EXPECT_TRUE(server.requests().empty());
    EXPECT_EQ(get(QStringLiteral("/api/configs")).status(), 200);
}

TEST_F(RequestLimit, RefusesABodyBeforeItsEnd)
{
    RawClient client(server.baseUrl());
    client.send("POST /api/metrics HTTP/1.1\r\nContent-Length: 1000000000000\r\n\r\n" +
                QByteArray(2 * kMostBodyBytes, 'x'));
    EXPECT_TRUE(client.readTo("\r\n\r\n").startsWith("HTTP/1.1 413 "));
}

TEST_F(RequestLimit, RefusesAHeadWithoutEnd)
{
    RawClient client(server.baseUrl());
    client.send("GET /" + QByteArray(2 * kMostBodyBytes, 'x'));
    EXPECT_TRUE(client.readTo("\r\n\r\n").startsWith("HTTP/1.1 413 "));
}

TEST_F(RequestLimit, RefusesABodyInChunksWithoutEnd)
{
    RawClient client(server.baseUrl());
    client.send("POST /api/metrics HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n");
    client.send("1000000\r\n" + QByteArray(2 * kMostBodyBytes, 'x'));
    EXPECT_TRUE(client.readTo("\r\n\r\n").startsWith("HTTP/1.1 413 "));
}

TEST_F(RequestLimit, HoldsForEachRequestOfAConnection)
{
    RawClient client(server.baseUrl());
    const QByteArray body(3 * kMostBodyBytes / 4, 'x');
    const QByteArray request =
        "POST /api/metrics HTTP/1.1\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    for (int i = 0; i < 4; ++i) {
        client.send(request);
        EXPECT_TRUE(client.readTo("at byte 1\n").startsWith("HTTP/1.1 400 "));
    }
}

TEST_F(RequestLimit, SurvivesWhatIsNoHttp)
{
    for (const char* bytes :
         {"\r\n\r\n", "x\r\n\r\n", "GET\r\n\r\n", "GET / FTP/1.1\r\n\r\n", "\xFF\xFE\xFF\r\n", "GET % HTTP/1.1\r\n\r\n",
          "POST /api/metrics HTTP/1.1\r\nContent-Length: -1\r\n\r\n", "GET /\r\nHost: :::\r\n\r\n",
          "POST /api/metrics HTTP/1.1\r\nContent-Length: 18446744073709551615\r\n\r\nxx",
          "GET http://:99999/ HTTP/1.1\r\nHost: [\r\n\r\n"}) {
        RawClient client(server.baseUrl());
        client.send(bytes);
    }
    EXPECT_EQ(get(QStringLiteral("/api/configs")).status(), 200);
}

} // namespace
} // namespace kovalin::test
