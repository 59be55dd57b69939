#include "picker/config/QXSDKKovalinLanguage.h"

#include "picker/config/KovalinString.h"
#include "support/QtPrinting.h"

#include <QtCore/QLocale>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

TEST(Languages, EnglishArabicFrenchGermanJapaneseAndSpanishAreAmongThem)
{
    const QStringList languages = QXSDKKovalinAvailableLanguages();
    EXPECT_THAT(languages, testing::IsSupersetOf({QStringLiteral("en"), QStringLiteral("ar"), QStringLiteral("fr"),
                                                  QStringLiteral("de"), QStringLiteral("ja"), QStringLiteral("es")}));
    EXPECT_TRUE(std::is_sorted(languages.begin(), languages.end()));
}

struct Choice {
    const char* name;
    QStringList preferred;
    QString chosen;
};

void PrintTo(const Choice& choice, std::ostream* stream)
{
    *stream << choice.name;
}

class LanguageChoice : public testing::TestWithParam<Choice> {
protected:
    void TearDown() override { QXSDKKovalinSetPreferredLanguages({}); }
};

TEST_P(LanguageChoice, TakesTheFirstThatThereAreTextsIn)
{
    QXSDKKovalinSetPreferredLanguages(GetParam().preferred);
    EXPECT_EQ(QXSDKKovalinCurrentLanguage(), GetParam().chosen);
}

INSTANTIATE_TEST_SUITE_P(
    Languages, LanguageChoice,
    testing::Values(
        Choice{"Exact", {QStringLiteral("fr")}, QStringLiteral("fr")},
        Choice{"WithACountry", {QStringLiteral("de-AT")}, QStringLiteral("de")},
        Choice{"WithAnUnderscore", {QStringLiteral("es_MX")}, QStringLiteral("es")},
        Choice{"WithItsUsualScript", {QStringLiteral("ar-Arab-EG")}, QStringLiteral("ar")},
        Choice{"InOrder", {QStringLiteral("ja"), QStringLiteral("de")}, QStringLiteral("ja")},
        Choice{"CountryDoesNotLoseToALaterOne", {QStringLiteral("de-AT"), QStringLiteral("en")}, QStringLiteral("de")},
        Choice{
            "PassesOverTheUnknown",
            {QStringLiteral("is"), QString(), QStringLiteral("?!"), QStringLiteral("../de"), QStringLiteral("pt-BR")},
            QStringLiteral("pt")},
        Choice{"ChineseIsSimplified", {QStringLiteral("zh")}, QStringLiteral("zh-Hans")},
        Choice{"ChineseOfSingapore", {QStringLiteral("zh-SG")}, QStringLiteral("zh-Hans")},
        Choice{"ChineseOfTaiwan", {QStringLiteral("zh-TW")}, QStringLiteral("zh-Hant")},
        Choice{"ChineseOfHongKong", {QStringLiteral("zh-Hant-HK")}, QStringLiteral("zh-Hant")},
        Choice{"EnglishIfNothingFits", {QStringLiteral("is"), QStringLiteral("C")}, QStringLiteral("en")}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Languages, EmptyListChoosesFromTheSystemsAgain)
{
    QXSDKKovalinSetPreferredLanguages(QLocale::system().uiLanguages());
    const QString expected = QXSDKKovalinCurrentLanguage();
    QXSDKKovalinSetPreferredLanguages({expected == u"ja" ? QStringLiteral("ko") : QStringLiteral("ja")});
    QXSDKKovalinSetPreferredLanguages({});
    EXPECT_EQ(QXSDKKovalinCurrentLanguage(), expected);
}

// Qt reads the system's languages once, so each system takes a process of its own: CMakeLists.txt runs this test alone in several.
TEST(SystemLanguage, IsTheOneAtFirst)
{
    const QString expected = qEnvironmentVariable("KOVALIN_EXPECTED_LANGUAGE");
    if (expected.isEmpty()) {
        GTEST_SKIP() << "Runs in processes of its own.";
    }
    EXPECT_EQ(QXSDKKovalinCurrentLanguage(), expected);
    EXPECT_NE(kovalinStringWithKey(QStringLiteral("retry")), QStringLiteral("retry"));
}

} // namespace
