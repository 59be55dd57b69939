#include "learned_search/generated-src/KovalinApiResponseConversion.h"
#include "learned_search/generated-src/ModelMetaDataConversion.h"
#include "learned_search/generated-src/OptionalConversion.h"
#include "support/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace djinni;
using namespace Qt::StringLiterals;
using testing::ContainsRegex;
using vole::learned_search::KovalinApiResponse;
using vole::learned_search::ModelMetaData;
using vole::learned_search::StatusEnums;

TEST(ModelMetaDataConversion, ConvertsFieldByField)
{
    const auto record = ModelMetaDataConversion::fromCpp({"/m\xC3\xBC", -7, StatusEnums::DOWNLOAD_FAILED});
    EXPECT_EQ(record->modelUrl(), u"/m\u00FC"_s);
    EXPECT_EQ(record->modelVersion(), -7);
    EXPECT_EQ(record->statusCode(), QXNativeStatusEnums::DOWNLOAD_FAILED);

    const ModelMetaData native = ModelMetaDataConversion::toCpp(record);
    EXPECT_EQ(native.modelUrl, "/m\xC3\xBC");
    EXPECT_EQ(native.modelVersion, -7);
    EXPECT_EQ(native.statusCode, StatusEnums::DOWNLOAD_FAILED);
}

TEST(ModelMetaDataConversion, KeepsAbsentFieldsAbsentAndEmptyOnesEmpty)
{
    const auto absent = ModelMetaDataConversion::fromCpp({std::nullopt, std::nullopt, StatusEnums(99)});
    EXPECT_EQ(absent->modelUrl(), std::nullopt);
    EXPECT_EQ(absent->modelVersion(), std::nullopt);
    EXPECT_EQ(absent->statusCode(), QXNativeStatusEnums(99));
    EXPECT_EQ(ModelMetaDataConversion::toCpp(absent).modelUrl, std::nullopt);
    EXPECT_EQ(ModelMetaDataConversion::toCpp(absent).modelVersion, std::nullopt);

    const auto empty = ModelMetaDataConversion::fromCpp({"", 0, StatusEnums::SUCCESS});
    EXPECT_EQ(empty->modelUrl(), QString());
    EXPECT_EQ(empty->modelVersion(), 0);
    EXPECT_EQ(ModelMetaDataConversion::toCpp(empty).modelUrl, "");
    EXPECT_EQ(ModelMetaDataConversion::toCpp(empty).modelVersion, 0);
}

TEST(KovalinApiResponseConversion, ConvertsFieldByField)
{
    for (const bool shouldUpdate : {true, false}) {
        const auto response = KovalinApiResponseConversion::fromCpp({shouldUpdate, "https://m\xC3\xBC", 8});
        EXPECT_EQ(response->shouldUpdate(), shouldUpdate);
        EXPECT_EQ(response->remoteModelUrl(), u"https://m\u00FC"_s);
        EXPECT_EQ(response->remoteModelVersion(), 8);

        const KovalinApiResponse native = KovalinApiResponseConversion::toCpp(response);
        EXPECT_EQ(native.shouldUpdate, shouldUpdate);
        EXPECT_EQ(native.remoteModelUrl, "https://m\xC3\xBC");
        EXPECT_EQ(native.remoteModelVersion, 8);
    }
}

TEST(KovalinApiResponseConversion, KeepsAbsentFieldsAbsent)
{
    const auto response = KovalinApiResponseConversion::fromCpp({true, std::nullopt, std::nullopt});
    EXPECT_EQ(response->remoteModelUrl(), std::nullopt);
    EXPECT_EQ(response->remoteModelVersion(), std::nullopt);
    EXPECT_EQ(KovalinApiResponseConversion::toCpp(response).remoteModelUrl, std::nullopt);
    EXPECT_EQ(KovalinApiResponseConversion::toCpp(response).remoteModelVersion, std::nullopt);
}

TEST(OptionalRecordConversion, TakesNullForAbsence)
{
    using Conversion = OptionalRecordConversion<KovalinApiResponseConversion>;

    EXPECT_FALSE(Conversion::toCpp(nullptr).has_value());
    EXPECT_EQ(Conversion::fromCpp(std::nullopt), nullptr);
    EXPECT_EQ(Conversion::fromCpp(KovalinApiResponse(true, "u", 8))->remoteModelVersion(), 8);
    const auto response = QXNativeKovalinApiResponse::KovalinApiResponseWithShouldUpdate(true, u"u"_s, 8);
    EXPECT_EQ(Conversion::toCpp(response)->remoteModelUrl, "u");
}

TEST(RecordConversionDeathTest, StopsTheProgramAtANullRecordWhereOneIsRequired)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    EXPECT_DEATH(static_cast<void>(ModelMetaDataConversion::toCpp(nullptr)), ContainsRegex("\\bobj\\b"));
    EXPECT_DEATH(static_cast<void>(KovalinApiResponseConversion::toCpp(nullptr)), ContainsRegex("\\bobj\\b"));
}
