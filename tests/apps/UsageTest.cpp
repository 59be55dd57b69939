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
                AllOf(HasSubstr("Usage: kovalin"), HasSubstr("search"), HasSubstr("sequence"), HasSubstr("predict"),
                      HasSubstr("suggest"), HasSubstr("words"), HasSubstr("model"), HasSubstr("events")));
}

TEST(KovalinUsage, HelpOfASubcommandNamesItsOptions)
{
    const auto result = runKovalin({QStringLiteral("search"), QStringLiteral("--help")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    for (const char* option : {"--packs FILE", "--model FILE", "--engine prefix|learned|fusion", "--types 0|1|0,1",
                               "--exact", "--explain", "--json", "--limit", "QUERY"}) {
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

TEST(KovalinUsage, SearchWantsAModelForAnEngineThatTakesOne)
{
    for (const char16_t* engine : {u"learned", u"fusion"}) {
        const QString name = QString::fromUtf16(engine);
        expectUsageError({QStringLiteral("search"), QStringLiteral("--packs"), QStringLiteral("/no/such/file"),
                          QStringLiteral("--engine"), name, QStringLiteral("smile")},
                         "kovalin: --engine: " + name.toStdString() + " takes a model, given with --model\n");
    }
    expectUsageError({QStringLiteral("search"), QStringLiteral("--packs"), examplePacks(), QStringLiteral("--model")},
                     "--model");
}

TEST(KovalinUsage, ArgumentsAreCheckedBeforeFiles)
{
    expectUsageError({QStringLiteral("search"), QStringLiteral("--packs"), QStringLiteral("/no/such/file"),
                      QStringLiteral("--types"), QStringLiteral("7")},
                     "--types");
}

TEST(KovalinUsage, QueriesOfAModelWantAModelFile)
{
    for (const char16_t* command : {u"predict", u"suggest", u"words"}) {
        expectUsageError({QString::fromUtf16(command), QStringLiteral("smile")}, "--model");
        expectUsageError({QString::fromUtf16(command), QStringLiteral("--model")}, "--model");
    }
    expectUsageError({QStringLiteral("model"), QStringLiteral("verify")}, "FILE");
    expectUsageError({QStringLiteral("model"), QStringLiteral("info")}, "FILE");
    expectUsageError({QStringLiteral("model"), QStringLiteral("info"), exampleModel(), QStringLiteral("more")}, "more");
}

TEST(KovalinUsage, EventsWantAFileToDecode)
{
    expectUsageError({QStringLiteral("events")}, "--decode");
    expectUsageError({QStringLiteral("events"), QStringLiteral("--decode")}, "--decode");
    expectUsageError({QStringLiteral("events"), QStringLiteral("file")}, "--decode");
    expectUsageError({QStringLiteral("events"), QStringLiteral("--decode"), QStringLiteral("/no/such/file"),
                      QStringLiteral("--jason")},
                     "--jason");
}

TEST(KovalinUsage, CountsAreWholeNumbersFromZeroOn)
{
    for (const char16_t* count :
         {u"-1", u"many", u"", u"1.5", u"1e3", u"2147483648", u"99999999999999999999", u"[1]"}) {
        const QString value = QString::fromUtf16(count);
        const auto message = "must be a whole number from 0 to 2147483647, not " + value.toStdString();
        expectUsageError({QStringLiteral("predict"), QStringLiteral("--model"), exampleModel(), QStringLiteral("--top"),
                          value, QStringLiteral("smile")},
                         "--top: " + message);
        expectUsageError({QStringLiteral("suggest"), QStringLiteral("--model"), exampleModel(),
                          QStringLiteral("--limit"), value, QStringLiteral("smile")},
                         "--limit: " + message);
        expectUsageError(
            {QStringLiteral("model"), QStringLiteral("info"), exampleModel(), QStringLiteral("--top"), value},
            "--top: " + message);
    }
}

TEST(KovalinUsage, ModelWantsASubcommandItKnows)
{
    expectUsageError({QStringLiteral("model")}, "subcommand is required");
    expectUsageError({QStringLiteral("model")}, "Usage: kovalin model");
    expectUsageError({QStringLiteral("model"), QStringLiteral("verfy"), exampleModel()},
                     "no such subcommand or option: verfy");
    expectUsageError({QStringLiteral("model"), QStringLiteral("search")}, "no such subcommand or option: search");
    expectUsageError({QStringLiteral("model"), QStringLiteral("--jason")}, "no such subcommand or option: --jason");
}

} // namespace
