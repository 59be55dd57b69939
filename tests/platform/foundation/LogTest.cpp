#include "platform/foundation/Log.h"

#include <QtCore/QList>

#include <gtest/gtest.h>

namespace {

Q_LOGGING_CATEGORY(lcTest, "kovalin.logtest")

struct Line {
    QtMsgType type;
    QString category;
    QString text;
};

class Log : public testing::Test {
protected:
    void SetUp() override
    {
        lines.clear();
        previousHandler =
            qInstallMessageHandler([](QtMsgType type, const QMessageLogContext& context, const QString& text) {
                lines.append({type, QString::fromUtf8(context.category), text});
            });
    }

    void TearDown() override
    {
        qInstallMessageHandler(previousHandler);
        QLoggingCategory::setFilterRules(QString());
    }

    static QString leadIn(const char* function, int line, const QString& level)
    {
        return QString::fromUtf8(function) + QStringLiteral(" [Line ") + QString::number(line) + QStringLiteral("] [") +
               level + QStringLiteral("] ");
    }

    // Static, since a message handler is a plain function.
    static inline QList<Line> lines;

private:
    QtMessageHandler previousHandler = nullptr;
};

TEST_F(Log, WritesFunctionLineAndLevelBeforeTheMessage)
{
    // clang-format off
    KOVALIN_LOG_DEBUG(lcTest, QStringLiteral("one")); const int first = __LINE__;
    KOVALIN_LOG_WARNING(lcTest, QStringLiteral("two"));
    KOVALIN_LOG_ERROR(lcTest, QStringLiteral("three"));
    // clang-format on

    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0].text, leadIn(Q_FUNC_INFO, first, QStringLiteral("DEBUG")) + QStringLiteral("one"));
    EXPECT_EQ(lines[1].text, leadIn(Q_FUNC_INFO, first + 1, QStringLiteral("WARNING")) + QStringLiteral("two"));
    EXPECT_EQ(lines[2].text, leadIn(Q_FUNC_INFO, first + 2, QStringLiteral("ERROR")) + QStringLiteral("three"));
    EXPECT_TRUE(lines[0].text.contains(QStringLiteral("WritesFunctionLineAndLevelBeforeTheMessage")));
}

TEST_F(Log, WritesEachLevelToItsKindInTheCategory)
{
    KOVALIN_LOG_DEBUG(lcTest, QString());
    KOVALIN_LOG_WARNING(lcTest, QString());
    KOVALIN_LOG_ERROR(lcTest, QString());

    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0].type, QtDebugMsg);
    EXPECT_EQ(lines[1].type, QtWarningMsg);
    EXPECT_EQ(lines[2].type, QtCriticalMsg);
    for (const Line& line : lines) {
        EXPECT_EQ(line.category, QStringLiteral("kovalin.logtest"));
    }
}

TEST_F(Log, LeavesTheMessageAsItIs)
{
    const QStringList messages = {
        QStringLiteral("%s %d %1 %% %{message} \\n"),
        QStringLiteral("\"quoted\" 'text'"),
        QStringLiteral(" spaces around  "),
        QStringLiteral("line\nbreak\ttab"),
        QStringLiteral("ümläut \U0001F600"),
        QString(QStringLiteral("nul") + QChar(u'\0') + QStringLiteral("inside")),
        QString(),
    };
    for (const QString& message : messages) {
        lines.clear();
        KOVALIN_LOG_WARNING(lcTest, message);
        const int line = __LINE__ - 1;
        ASSERT_EQ(lines.size(), 1);
        EXPECT_EQ(lines[0].text, leadIn(Q_FUNC_INFO, line, QStringLiteral("WARNING")) + message);
    }
}

TEST_F(Log, TakesAnyExpressionThatConvertsToAString)
{
    KOVALIN_LOG_DEBUG(lcTest, QStringLiteral("a") + QString::number(1) + QStringLiteral("b"));
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].text.endsWith(QStringLiteral("[DEBUG] a1b")));
}

TEST_F(Log, ObeysTheFilterRulesAndEvaluatesNoMessageInVain)
{
    QLoggingCategory::setFilterRules(QStringLiteral("kovalin.logtest.debug=false\nkovalin.logtest.critical=false"));
    int evaluated = 0;
    const auto message = [&evaluated] {
        ++evaluated;
        return QStringLiteral("message");
    };
    KOVALIN_LOG_DEBUG(lcTest, message());
    KOVALIN_LOG_ERROR(lcTest, message());
    EXPECT_EQ(evaluated, 0);
    EXPECT_TRUE(lines.isEmpty());

    KOVALIN_LOG_WARNING(lcTest, message());
    EXPECT_EQ(evaluated, 1);
    EXPECT_EQ(lines.size(), 1);
}

TEST_F(Log, IsOneStatement)
{
    for (const bool isError : {false, true}) {
        if (isError)
            KOVALIN_LOG_ERROR(lcTest, QStringLiteral("error"));
        else
            KOVALIN_LOG_DEBUG(lcTest, QStringLiteral("debug"));
    }
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0].type, QtDebugMsg);
    EXPECT_EQ(lines[1].type, QtCriticalMsg);
}

} // namespace
