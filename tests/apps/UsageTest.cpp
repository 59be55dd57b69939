#include "QXSDKKovalinKit/Version.h"
#include "apps/KovalinProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kovalin::test;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

void expectUsageError(const QStringList& arguments, const std::string& message)
{
    const auto result = runKovalin(arguments);
    SCOPED_TRACE(arguments.join(u' ').toStdString());
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors.toStdString(),
                AllOf(StartsWith("kovalin: "), HasSubstr(message), HasSubstr("Usage: kovalin")));
}

TEST(KovalinUsage, HelpNamesTheSubcommands)
{
    const auto result = runKovalin({QStringLiteral("--help")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output.toStdString(),
                AllOf(HasSubstr("Usage: kovalin"), HasSubstr("search"), HasSubstr("sequence")));
}

TEST(KovalinUsage, HelpOfASubcommandNamesItsOptions)
{
    const auto result = runKovalin({QStringLiteral("search"), QStringLiteral("--help")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    for (const char* option :
         {"--packs FILE", "--engine", "--types 0|1|0,1", "--exact", "--explain", "--json", "--limit", "QUERY"}) {
        EXPECT_THAT(result.output.toStdString(), HasSubstr(option));
    }
}

TEST(KovalinUsage, VersionIsTheLibrarys)
{
    const auto result = runKovalin({QStringLiteral("--version")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, QByteArray("kovalin ") + QXSDKKovalinKitVersionString + '\n');
    EXPECT_EQ(result.errors, "");
}

TEST(KovalinUsage, WantsASubcommandItKnows)
{
    expectUsageError({}, "subcommand is required");
    expectUsageError({QStringLiteral("serch")}, "serch");
}

TEST(KovalinUsage, RefusesArgumentsItDoesNotKnow)
{
    expectUsageError({QStringLiteral("sequence"), QStringLiteral("more")}, "more");
    expectUsageError({QStringLiteral("sequence"), QStringLiteral("--jason")}, "--jason");
    expectUsageError({QStringLiteral("search"), QStringLiteral("--packs"), examplePacks(), QStringLiteral("--jason")},
                     "--jason");
}

TEST(KovalinUsage, SearchWantsAPacksFile)
{
    expectUsageError({QStringLiteral("search"), QStringLiteral("smile")}, "--packs");
    expectUsageError({QStringLiteral("search"), QStringLiteral("--packs")}, "--packs");
}

TEST(KovalinUsage, SearchRefusesValuesThatItsOptionsDoNotHave)
{
    const auto expectRefused = [](const QString& option, const QString& value) {
        expectUsageError({QStringLiteral("search"), QStringLiteral("--packs"), examplePacks(), option, value},
                         option.toStdString());
    };
    for (const char16_t* types : {u"2", u"", u"0,2", u"0 1", u"solo", u"[0]"}) {
        expectRefused(QStringLiteral("--types"), QString::fromUtf16(types));
    }
    expectRefused(QStringLiteral("--engine"), QStringLiteral("suffix"));
    expectRefused(QStringLiteral("--limit"), QStringLiteral("-1"));
    expectRefused(QStringLiteral("--limit"), QStringLiteral("many"));
}

TEST(KovalinUsage, ArgumentsAreCheckedBeforeFiles)
{
    expectUsageError({QStringLiteral("search"), QStringLiteral("--packs"), QStringLiteral("/no/such/file"),
                      QStringLiteral("--types"), QStringLiteral("7")},
                     "--types");
}

} // namespace
