#include "kovalin-backend/AnswerRule.h"

#include "kovalin-backend/AnswerRules.h"
#include "kovalin-backend/ControlLine.h"

#include <gtest/gtest.h>

#include <chrono>
#include <variant>

namespace kovalin::backend {
namespace {

using namespace std::chrono_literals;
using Kind = AnswerRule::Kind;

AnswerRule ruleIn(const char* text)
{
    const auto read = AnswerRule::fromText(text);
    return std::holds_alternative<AnswerRule>(read) ? std::get<AnswerRule>(read) : AnswerRule{.kind = Kind::Status};
}

TEST(AnswerRuleText, IsOneOfTheRules)
{
    EXPECT_EQ(ruleIn("ok"), AnswerRule{});
    EXPECT_EQ(ruleIn("garbage"), AnswerRule{.kind = Kind::Garbage});
    EXPECT_EQ(ruleIn("cut"), AnswerRule{.kind = Kind::Cut});
    EXPECT_EQ(ruleIn("nothing"), AnswerRule{.kind = Kind::Nothing});
    EXPECT_EQ(ruleIn("refuse"), AnswerRule{.kind = Kind::Refuse});
    EXPECT_EQ(ruleIn("503"), AnswerRule::withStatus(503));
    EXPECT_EQ(ruleIn(" 503   retry-after\t7 "), AnswerRule::withStatus(503, 7));
    EXPECT_EQ(ruleIn("429 retry-after 0"), AnswerRule::withStatus(429, 0));
    EXPECT_EQ(ruleIn("delay 0"), AnswerRule::delayed(0ms));
    EXPECT_EQ(ruleIn("delay 86400000"), AnswerRule::delayed(24h));
    EXPECT_EQ(ruleIn(" with  auto=deny&account=x "), AnswerRule::withQuery("auto=deny&account=x"));
}

TEST(AnswerRuleText, HasABodyAsItStands)
{
    EXPECT_EQ(ruleIn("body {}"), AnswerRule::withBody("{}"));
    EXPECT_EQ(ruleIn(" body \t{\"a\":\n  \"b  c\"} \n"), AnswerRule::withBody("{\"a\":\n  \"b  c\"}"));
    EXPECT_EQ(ruleIn("body ok"), AnswerRule::withBody("ok"));
    const auto read = PathRule::fromText("/api/graphql#packs body {  }");
    ASSERT_TRUE(std::holds_alternative<PathRule>(read));
    EXPECT_EQ(std::get<PathRule>(read).path, "/api/graphql#packs");
    EXPECT_EQ(std::get<PathRule>(read).rule, AnswerRule::withBody("{  }"));
}

TEST(AnswerRuleText, IsNothingElse)
{
    for (const char* text : {"",
                             " ",
                             "OK",
                             "okay",
                             "199",
                             "600",
                             "99999999999",
                             "-503",
                             "+503",
                             "5o3",
                             "503 retry-after",
                             "503 retry-after x",
                             "503 retry-after -1",
                             "503 after 7",
                             "503 7",
                             "503 retry-after 7 8",
                             "delay",
                             "delay x",
                             "delay -1",
                             "delay 86400001",
                             "delay 1 2",
                             "cut 5",
                             "nothing at all",
                             "ok ok",
                             "with",
                             "with a b",
                             "body",
                             "body ",
                             "bodies {}",
                             "\xFF"}) {
        const auto read = AnswerRule::fromText(text);
        ASSERT_TRUE(std::holds_alternative<QString>(read)) << text;
        EXPECT_TRUE(std::get<QString>(read).contains(QStringLiteral(" is no rule: "))) << text;
    }
}

TEST(PathRuleText, HasAPathAndARule)
{
    const auto read = PathRule::fromText("/content/models/* 503 retry-after 7\n");
    ASSERT_TRUE(std::holds_alternative<PathRule>(read));
    EXPECT_EQ(std::get<PathRule>(read).path, "/content/models/*");
    EXPECT_EQ(std::get<PathRule>(read).rule, AnswerRule::withStatus(503, 7));
}

QString pathFaultIn(const QByteArray& text)
{
    const auto read = PathRule::fromText(text);
    return std::holds_alternative<QString>(read) ? std::get<QString>(read) : QString();
}

QString noPath(const QString& given)
{
    return QStringLiteral("\"%1\" is no path: it begins with \"/\" and has no \"?\"").arg(given);
}

TEST(PathRuleText, SaysWhatIsWrongOnOneLine)
{
    EXPECT_EQ(pathFaultIn(""), noPath(QString()));
    EXPECT_EQ(pathFaultIn("* 503"), noPath(QStringLiteral("*")));
    EXPECT_EQ(pathFaultIn("/x?y=1 503"), noPath(QStringLiteral("/x?y=1")));
    EXPECT_EQ(pathFaultIn("503 /x"), noPath(QStringLiteral("503")));
    EXPECT_TRUE(pathFaultIn("/x").startsWith(QStringLiteral("\"\" is no rule: ok, ")));
    EXPECT_TRUE(pathFaultIn("/x\nslow").startsWith(QStringLiteral("\"slow\" is no rule: ok, ")));
    EXPECT_LT(pathFaultIn("/x " + QByteArray(100'000, 'y')).size(), 400);
}

TEST(ControlLine, IsTheCommandWithAPathAndARule)
{
    const auto read = readControlLine("  backend  /api/configs  delay 250 ");
    ASSERT_TRUE(std::holds_alternative<PathRule>(read));
    EXPECT_EQ(std::get<PathRule>(read).path, "/api/configs");
    EXPECT_EQ(std::get<PathRule>(read).rule, AnswerRule::delayed(250ms));
}

TEST(ControlLine, IsNothingElse)
{
    for (const char* line : {"", "backend", "backends /x ok", "/x ok", "backend /x", "backend x ok", "wait 5"}) {
        EXPECT_TRUE(std::holds_alternative<QString>(readControlLine(line))) << line;
    }
}

TEST(AnswerRulesOfPaths, AreUsualUnlessSaidOtherwise)
{
    AnswerRules rules;
    EXPECT_EQ(rules.ruleFor("/x"), AnswerRule{});
    rules.set({"/x", AnswerRule::withStatus(500)});
    EXPECT_EQ(rules.ruleFor("/x"), AnswerRule::withStatus(500));
    EXPECT_EQ(rules.ruleFor("/x/y"), AnswerRule{});
    EXPECT_EQ(rules.ruleFor("/"), AnswerRule{});
    rules.set({"/x", {}});
    EXPECT_EQ(rules.ruleFor("/x"), AnswerRule{});
}

TEST(AnswerRulesOfPaths, GoByTheOperationFirst)
{
    AnswerRules rules;
    rules.set({"/a*", AnswerRule::withStatus(500)});
    rules.set({"/a#x", AnswerRule::withStatus(501)});
    EXPECT_EQ(rules.ruleFor("/a", "x"), AnswerRule::withStatus(501));
    EXPECT_EQ(rules.ruleFor("/a", "y"), AnswerRule::withStatus(500));
    EXPECT_EQ(rules.ruleFor("/a"), AnswerRule::withStatus(500));
    rules.set({"/a", AnswerRule::withStatus(502)});
    rules.set({"/a#x", {}});
    EXPECT_EQ(rules.ruleFor("/a", "x"), AnswerRule{});
    EXPECT_EQ(rules.ruleFor("/a", "y"), AnswerRule::withStatus(502));
    EXPECT_EQ(rules.ruleFor("/b", "x"), AnswerRule{});
}

TEST(AnswerRulesOfPaths, GoByThePathItselfAndThenByItsLongestBeginning)
{
    AnswerRules rules;
    rules.set({"/*", AnswerRule::withStatus(500)});
    rules.set({"/a/*", AnswerRule::withStatus(501)});
    rules.set({"/a/b*", AnswerRule::withStatus(502)});
    rules.set({"/a/c", {}});
    EXPECT_EQ(rules.ruleFor("/"), AnswerRule::withStatus(500));
    EXPECT_EQ(rules.ruleFor("/b"), AnswerRule::withStatus(500));
    EXPECT_EQ(rules.ruleFor("/a"), AnswerRule::withStatus(500));
    EXPECT_EQ(rules.ruleFor("/a/"), AnswerRule::withStatus(501));
    EXPECT_EQ(rules.ruleFor("/a/zz"), AnswerRule::withStatus(501));
    EXPECT_EQ(rules.ruleFor("/a/b"), AnswerRule::withStatus(502));
    EXPECT_EQ(rules.ruleFor("/a/bc/d"), AnswerRule::withStatus(502));
    EXPECT_EQ(rules.ruleFor("/a/c"), AnswerRule{});
    EXPECT_EQ(rules.ruleFor("/a/cd"), AnswerRule::withStatus(501));
}

} // namespace
} // namespace kovalin::backend
