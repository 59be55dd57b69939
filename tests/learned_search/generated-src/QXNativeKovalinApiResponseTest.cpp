#include "learned_search/generated-src/QXNativeKovalinApiResponse.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString addressOf(const void* object)
{
    return QString::asprintf("0x%llx", static_cast<unsigned long long>(reinterpret_cast<quintptr>(object)));
}

} // namespace

TEST(QXNativeKovalinApiResponse, HoldsItsFields)
{
    const auto response = QXNativeKovalinApiResponse::KovalinApiResponseWithShouldUpdate(true, u"https://m"_s, 8);

    EXPECT_TRUE(response->shouldUpdate());
    EXPECT_EQ(response->remoteModelUrl(), u"https://m"_s);
    EXPECT_EQ(response->remoteModelVersion(), 8);
}

TEST(QXNativeKovalinApiResponse, DescribesItself)
{
    const QXNativeKovalinApiResponse response(true, u"https://m?%20=%1"_s, 8);

    EXPECT_EQ(response.description(), u"<QXNativeKovalinApiResponse "_s + addressOf(&response) +
                                          u" shouldUpdate:1 remoteModelUrl:https://m?%20=%1 remoteModelVersion:8>"_s);
}

TEST(QXNativeKovalinApiResponse, DescribesAbsentFieldsAsNull)
{
    const QXNativeKovalinApiResponse response(false, std::nullopt, std::nullopt);

    EXPECT_EQ(response.description(), u"<QXNativeKovalinApiResponse "_s + addressOf(&response) +
                                          u" shouldUpdate:0 remoteModelUrl:(null) remoteModelVersion:(null)>"_s);
}
