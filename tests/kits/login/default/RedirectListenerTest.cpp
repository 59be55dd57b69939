#include "kits/login/default/RedirectListener.h"

#include "kits/login/default/RedirectPage.h"
#include "support/QtPrinting.h"
#include "support/WaitFor.h"

#include <QtCore/QUrl>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QNetworkInterface>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QTcpSocket>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

using namespace kovalin::test;

namespace {

/// What a browser gets for what it sends.
class Browser final {
public:
    explicit Browser(const RedirectListener& listener)
    {
        _socket.setProxy(QNetworkProxy::NoProxy);
        _socket.connectToHost(QHostAddress(QHostAddress::LocalHost),
                              static_cast<quint16>(QUrl(listener.redirectUri()).port()));
    }

    void send(const QByteArray& bytes)
    {
        ASSERT_TRUE(waitFor([this] { return _socket.state() != QTcpSocket::ConnectingState; }));
        _socket.write(bytes);
        ASSERT_TRUE(waitFor([this] { return _socket.bytesToWrite() == 0 || !isOpen(); }));
    }

    [[nodiscard]] QByteArray answer()
    {
        EXPECT_TRUE(waitFor([this] { return !isOpen(); }));
        return _socket.readAll();
    }

    [[nodiscard]] bool isOpen() const { return _socket.state() != QTcpSocket::UnconnectedState; }

private:
    QTcpSocket _socket;
};

class RedirectListenerTest : public testing::Test {
protected:
    QByteArray get(const QByteArray& target)
    {
        Browser browser(*listener);
        browser.send("GET " + target + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
        return browser.answer();
    }

    std::vector<RedirectListener::Parameters> arrived;
    std::unique_ptr<RedirectListener> listener = std::make_unique<RedirectListener>(
        [this](const RedirectListener::Parameters& parameters) { arrived.push_back(parameters); });
};

TEST_F(RedirectListenerTest, ListensOnTheLoopbackAddressAtAFreePort)
{
    const QUrl uri(listener->redirectUri());
    EXPECT_EQ(uri.scheme(), QStringLiteral("http"));
    EXPECT_EQ(uri.host(), QStringLiteral("127.0.0.1"));
    const RedirectListener other([](const auto&) {});
    EXPECT_NE(QUrl(other.redirectUri()).port(), uri.port());
    for (const QHostAddress& address : QNetworkInterface::allAddresses()) {
        if (!address.isLoopback()) {
            QTcpSocket socket;
            socket.setProxy(QNetworkProxy::NoProxy);
            socket.connectToHost(address, static_cast<quint16>(uri.port()));
            EXPECT_TRUE(waitFor([&] {
                return socket.state() != QTcpSocket::ConnectingState && socket.state() != QTcpSocket::HostLookupState;
            }));
            EXPECT_NE(socket.state(), QTcpSocket::ConnectedState) << address.toString().toStdString();
        }
    }
}

TEST_F(RedirectListenerTest, DecodesTheRedirect)
{
    const QByteArray answer = get("/oauth2/redirect?a=1&b=%C3%A4+%2B&c&=d&a=2&e=x=y");
    EXPECT_TRUE(answer.startsWith("HTTP/1.1 200 OK\r\n"));
    ASSERT_EQ(arrived.size(), 1U);
    const auto& parameters = arrived.front();
    EXPECT_EQ(parameters.value(QStringLiteral("a")), QStringLiteral("1"));
    EXPECT_EQ(parameters.value(QStringLiteral("b")), QStringLiteral("ä +"));
    EXPECT_EQ(parameters.value(QStringLiteral("e")), QStringLiteral("x=y"));
    EXPECT_TRUE(parameters.contains(QStringLiteral("c")));
}

TEST_F(RedirectListenerTest, GoesOnWaitingAfterWhatIsNoRedirect)
{
    EXPECT_TRUE(get("/favicon.ico").startsWith("HTTP/1.1 404 "));
    EXPECT_TRUE(get("/oauth2/redirect").startsWith("HTTP/1.1 404 "));
    EXPECT_TRUE(get("/oauth2/redirectx?code=a").startsWith("HTTP/1.1 404 "));
    EXPECT_TRUE(get("http://evil/oauth2/redirect?code=a").startsWith("HTTP/1.1 404 "));
    for (const QByteArray& garbage :
         {QByteArray("POST /oauth2/redirect?code=a HTTP/1.1\r\n\r\n"), QByteArray("GET\r\n\r\n"),
          QByteArray("\r\n\r\n"), QByteArray("\0\xff\xfe\r\n\r\n", 7),
          QByteArray("GET /oauth2/redirect?a=b\r\n\r\n")}) {
        Browser browser(*listener);
        browser.send(garbage);
        EXPECT_TRUE(browser.answer().startsWith("HTTP/1.1 405 "));
    }
    EXPECT_TRUE(arrived.empty());
    EXPECT_TRUE(get("/oauth2/redirect?code=a").startsWith("HTTP/1.1 200 "));
    EXPECT_EQ(arrived.size(), 1U);
}

TEST_F(RedirectListenerTest, RefusesAHeadWithoutEnd)
{
    Browser browser(*listener);
    browser.send("GET /oauth2/redirect?code=" + QByteArray(70'000, 'a'));
    EXPECT_TRUE(waitFor([&] { return !browser.isOpen(); }));
    EXPECT_TRUE(arrived.empty());
    EXPECT_TRUE(get("/oauth2/redirect?code=a").startsWith("HTTP/1.1 200 "));
}

TEST_F(RedirectListenerTest, TakesARequestInPieces)
{
    Browser browser(*listener);
    for (const char* const piece : {"GE", "T /oauth2/redi", "rect?code=a HTTP/1.1\r\nHo", "st: x\r\n\r", "\n"}) {
        EXPECT_TRUE(arrived.empty());
        browser.send(piece);
        drainMainQueue();
    }
    EXPECT_TRUE(browser.answer().contains("return to"));
    EXPECT_EQ(arrived.size(), 1U);
}

TEST_F(RedirectListenerTest, ServesTheRedirectBesideConnectionsThatSayNothing)
{
    std::vector<std::unique_ptr<Browser>> silent;
    for (int i = 0; i < 10; ++i) {
        silent.push_back(std::make_unique<Browser>(*listener));
        silent.back()->send({});
    }
    EXPECT_TRUE(get("/oauth2/redirect?code=a").startsWith("HTTP/1.1 200 "));
    listener.reset();
    for (const auto& browser : silent) {
        EXPECT_TRUE(waitFor([&] { return !browser->isOpen(); }));
    }
}

TEST_F(RedirectListenerTest, ListensNoMoreAfterTheRedirect)
{
    const int port = QUrl(listener->redirectUri()).port();
    EXPECT_TRUE(get("/oauth2/redirect?code=a").startsWith("HTTP/1.1 200 "));
    EXPECT_TRUE(listener->redirectUri().isEmpty());
    QTcpSocket socket;
    socket.setProxy(QNetworkProxy::NoProxy);
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), static_cast<quint16>(port));
    EXPECT_TRUE(waitFor([&] { return socket.state() == QTcpSocket::UnconnectedState; }));
    EXPECT_EQ(arrived.size(), 1U);
}

TEST_F(RedirectListenerTest, AnswersTheBrowserThoughItIsDestroyedByTheRedirect)
{
    std::unique_ptr<RedirectListener> brief;
    brief = std::make_unique<RedirectListener>([&brief](const auto&) { brief.reset(); });
    Browser browser(*brief);
    browser.send("GET /oauth2/redirect?code=a HTTP/1.1\r\n\r\n");
    EXPECT_TRUE(browser.answer().contains("return to"));
    EXPECT_EQ(brief, nullptr);
}

TEST(RedirectPage, EscapesTheNameOfTheApplication)
{
    const QByteArray page = redirectPage(QStringLiteral("<script>\"Tom & Jerry\"</script>"));
    EXPECT_TRUE(page.contains("return to &lt;script&gt;&quot;Tom &amp; Jerry&quot;&lt;/script&gt;."));
    EXPECT_FALSE(page.contains("<script"));
    EXPECT_TRUE(redirectPage({}).contains("return to the app."));
}

TEST(RedirectPage, LoadsNothingAndIsntKept)
{
    const QByteArray page = redirectPage({});
    EXPECT_TRUE(page.contains("Content-Security-Policy: default-src 'none'"));
    EXPECT_TRUE(page.contains("Cache-Control: no-store\r\n"));
    EXPECT_TRUE(page.contains("Referrer-Policy: no-referrer\r\n"));
    const qsizetype body = page.indexOf("\r\n\r\n") + 4;
    EXPECT_TRUE(page.contains(QByteArray("Content-Length: " + QByteArray::number(page.size() - body) + "\r\n")));
}

} // namespace
