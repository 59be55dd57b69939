#include "platform/net/Redirect.h"

#include "platform/net/Fetching.h"
#include "support/LoopbackServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <variant>

namespace kovalin::platform {
namespace {

using test::fetch;
using test::LoopbackServer;
using test::ScriptedAnswer;
using test::TaskEnd;
using test::withoutProxy;

UrlRequest to(const char* url)
{
    return {.url = QUrl(QString::fromUtf8(url))};
}

QString followed(const char* from, const char* location)
{
    const auto next = followRedirect(to(from), 302, location);
    const auto* const request = std::get_if<UrlRequest>(&next);
    return request != nullptr ? request->url.toString() : QString::fromLatin1(nameOf(std::get<UrlError>(next).kind));
}

TEST(Redirect, IsFiveStatuses)
{
    for (const int status : {301, 302, 303, 307, 308}) {
        EXPECT_TRUE(isRedirectStatus(status)) << status;
    }
    for (const int status : {200, 300, 304, 305, 306, 309, 400}) {
        EXPECT_FALSE(isRedirectStatus(status)) << status;
    }
}

TEST(Redirect, GoesToARelativeOrAFullAddress)
{
    EXPECT_EQ(followed("http://a/b/c?d", "e"), QStringLiteral("http://a/b/e"));
    EXPECT_EQ(followed("http://a/b/c", "/e?f"), QStringLiteral("http://a/e?f"));
    EXPECT_EQ(followed("http://a/b", "//h/e"), QStringLiteral("http://h/e"));
    EXPECT_EQ(followed("http://a/b", "http://h:8/e"), QStringLiteral("http://h:8/e"));
}

TEST(Redirect, IsNotFollowedToLessSafe)
{
    EXPECT_EQ(followed("http://a/", "https://a/"), QStringLiteral("https://a/"));
    EXPECT_EQ(followed("https://a/", "https://b/"), QStringLiteral("https://b/"));
    EXPECT_EQ(followed("https://a/", "http://a/"), QStringLiteral("UnsafeRedirect"));
    EXPECT_EQ(followed("http://a/", "file:///etc/passwd"), QStringLiteral("UnsafeRedirect"));
    EXPECT_EQ(followed("https://a/", "file:///etc/passwd"), QStringLiteral("UnsafeRedirect"));
    EXPECT_EQ(followed("http://a/", "data:,x"), QStringLiteral("UnsafeRedirect"));
    EXPECT_EQ(followed("http://a/", "http://"), QStringLiteral("BadUrl"));
}

TEST(Redirect, TurnsAPostIntoAGetButFor307And308)
{
    UrlRequest post = to("http://a/");
    post.method = UrlRequest::Method::Post;
    post.body = "b";
    post.headers = {{"Content-TYPE", "text/plain"}, {"X", "1"}};
    for (const int status : {301, 302, 303}) {
        const auto next = std::get<UrlRequest>(followRedirect(post, status, "/n"));
        EXPECT_EQ(next.method, UrlRequest::Method::Get);
        EXPECT_EQ(next.body, "");
        EXPECT_THAT(next.headers, testing::ElementsAre(testing::Pair("X", "1")));
    }
    for (const int status : {307, 308}) {
        const auto next = std::get<UrlRequest>(followRedirect(post, status, "/n"));
        EXPECT_EQ(next.method, UrlRequest::Method::Post);
        EXPECT_EQ(next.body, "b");
        EXPECT_EQ(next.headers, post.headers);
    }
}

TEST(Redirect, LeavesCredentialsWithTheirServer)
{
    UrlRequest request = to("https://a/");
    request.headers = {{"authorization", "s"}, {"Cookie", "c"}, {"X", "1"}};
    for (const char* const own : {"/b", "https://a/b", "https://a:443/b"}) {
        EXPECT_EQ(std::get<UrlRequest>(followRedirect(request, 302, own)).headers.size(), 3) << own;
    }
    for (const char* const foreign : {"https://b/", "https://a:8443/", "https://a.b/"}) {
        EXPECT_THAT(std::get<UrlRequest>(followRedirect(request, 302, foreign)).headers,
                    testing::ElementsAre(testing::Pair("X", "1")))
            << foreign;
    }
}

class Redirects : public testing::Test {
protected:
    [[nodiscard]] TaskEnd get(const QString& path) { return fetch(session, {.url = server.url(path)}); }

    LoopbackServer server;
    UrlSession session{withoutProxy()};
};

TEST_F(Redirects, AreFollowedToTheAnswer)
{
    server.script("/a", ScriptedAnswer::redirect("/b", 301));
    server.script("/b", ScriptedAnswer::redirect(server.url(QStringLiteral("/c")).toEncoded(), 303));
    server.script("/c", ScriptedAnswer::ok("here"));
    const TaskEnd end = get(QStringLiteral("/a"));
    EXPECT_EQ(end.data, "here");
    EXPECT_EQ(end.status(), 200);
    EXPECT_EQ(end.response->url, server.url(QStringLiteral("/c")));
}

TEST_F(Redirects, DropTheBodyOfTheRedirectItself)
{
    ScriptedAnswer moved = ScriptedAnswer::redirect("/b");
    moved.body = "moved";
    server.script("/a", moved);
    server.script("/b", ScriptedAnswer::ok("here"));
    EXPECT_EQ(get(QStringLiteral("/a")).data, "here");
}

TEST_F(Redirects, RepeatThePostAfter307)
{
    server.script("/a", ScriptedAnswer::redirect("/b", 307));
    server.script("/b", ScriptedAnswer::ok("taken"));
    const UrlRequest post{
        .url = server.url(QStringLiteral("/a")), .method = UrlRequest::Method::Post, .body = QByteArray(100'000, 'p')};
    const TaskEnd end = fetch(session, post);
    EXPECT_EQ(end.data, "taken") << (end.error ? end.error->text.toStdString() : "");
    EXPECT_EQ(server.requests().at(1).method, "POST");
    EXPECT_TRUE(server.requests().at(1).body == post.body);
}

TEST_F(Redirects, AreTwentyAtMost)
{
    for (int i = 0; i < 20; ++i) {
        server.script("/" + QByteArray::number(i), ScriptedAnswer::redirect("/" + QByteArray::number(i + 1)));
    }
    server.script("/20", ScriptedAnswer::ok("here"));
    EXPECT_EQ(get(QStringLiteral("/0")).data, "here");
    server.script("/20", ScriptedAnswer::redirect("/21"));
    server.script("/21", ScriptedAnswer::ok("too far"));
    EXPECT_EQ(get(QStringLiteral("/0")).kind(), "TooManyRedirects");
    EXPECT_EQ(server.requests().back().target, "/20");
}

TEST_F(Redirects, ToAFileAreRefused)
{
    server.script("/", ScriptedAnswer::redirect("file:///etc/passwd"));
    EXPECT_EQ(get(QStringLiteral("/")).kind(), "UnsafeRedirect");
}

TEST_F(Redirects, ToARefusedConnectionTellSo)
{
    LoopbackServer gone;
    server.script("/", ScriptedAnswer::redirect(gone.url(QStringLiteral("/")).toEncoded()));
    gone.stopListening();
    EXPECT_EQ(get(QStringLiteral("/")).kind(), "CannotConnect");
}

} // namespace
} // namespace kovalin::platform
