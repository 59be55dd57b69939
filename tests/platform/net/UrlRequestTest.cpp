#include "platform/net/UrlRequest.h"

#include "platform/net/Fetching.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace kovalin::platform {
namespace {

using test::fetch;
using test::withoutProxy;

TEST(UrlRequest, WaitsAMinuteAndTakesAQuarterOfAGibibyteUnlessTold)
{
    EXPECT_EQ(UrlRequest().idleTimeout, std::chrono::minutes(1));
    EXPECT_EQ(UrlRequest().maxAnswerBytes, 268'435'456);
}

TEST(UrlRequest, MayGoToHttpAndHttps)
{
    for (const char* const url :
         {"http://a", "https://a.b:1/c?d#e", "HTTP://A", "http://[::1]/", "https://b\u00fccher.example/"}) {
        EXPECT_FALSE(defectOf({.url = QUrl(QString::fromUtf8(url))})) << url;
    }
}

TEST(UrlRequest, MayNotGoElsewhere)
{
    UrlSession session(withoutProxy());
    for (const char* const url : {"", "nonsense", "/path", "http:", "http:///path", "file:///etc/passwd", "ftp://a/b",
                                  "data:,x", "qrc:/x", "javascript:x", "http://a:99999/", "http://a b/"}) {
        const UrlRequest request{.url = QUrl(QString::fromUtf8(url))};
        ASSERT_TRUE(defectOf(request)) << url;
        EXPECT_EQ(defectOf(request)->kind, UrlError::Kind::BadUrl) << url;
        EXPECT_FALSE(defectOf(request)->text.isEmpty());
        EXPECT_EQ(fetch(session, request).kind(), "BadUrl") << url;
    }
}

TEST(UrlRequest, MayNotSmuggleAHeader)
{
    UrlSession session(withoutProxy());
    const QList<std::pair<QByteArray, QByteArray>> bad = {{"X", "1\r\nY: 2"}, {"X", "1\n"}, {"X", QByteArray("1\0", 2)},
                                                          {"X\r\nY", "1"},    {"X Y", "1"}, {"X:", "1"},
                                                          {"", "1"}};
    for (const auto& header : bad) {
        const UrlRequest request{.url = QUrl(QStringLiteral("http://127.0.0.1:1/")), .headers = {header}};
        EXPECT_EQ(fetch(session, request).kind(), "Other") << header.first.toStdString();
    }
}

} // namespace
} // namespace kovalin::platform
