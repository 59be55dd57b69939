#include "picker/config/KovalinString.h"

#include "picker/config/QXSDKKovalinLanguage.h"
#include "picker/config/TextKeys.h"
#include "support/QtPrinting.h"

#include <QtCore/QLocale>
#include <QtCore/QSet>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace {

std::string nameOf(const testing::TestParamInfo<QString>& test)
{
    return QString(test.param).replace(u'-', u'_').toStdString();
}

std::vector<QString> languages()
{
    const QStringList available = QXSDKKovalinAvailableLanguages();
    return {available.begin(), available.end()};
}

class TextsInEachLanguage : public testing::TestWithParam<QString> {
protected:
    void SetUp() override
    {
        QXSDKKovalinSetPreferredLanguages({GetParam()});
        ASSERT_EQ(QXSDKKovalinCurrentLanguage(), GetParam());
    }

    void TearDown() override { QXSDKKovalinSetPreferredLanguages({}); }
};

TEST_P(TextsInEachLanguage, HaveEveryKey)
{
    for (const QString& key : textKeys()) {
        const QString text = kovalinStringWithKey(key);
        EXPECT_FALSE(text.isEmpty()) << key.toStdString();
        EXPECT_NE(text, key);
    }
}

TEST_P(TextsInEachLanguage, HaveNoStraySpaces)
{
    for (const QString& key : textKeys()) {
        const QString text = kovalinStringWithKey(key);
        EXPECT_EQ(text, text.simplified()) << key.toStdString();
    }
}

TEST_P(TextsInEachLanguage, HaveOnePlaceholderInTheFormatAndNoneElsewhere)
{
    const QString format = QStringLiteral("turn_on_permission_title_format");
    for (const QString& key : textKeys()) {
        const QString text = kovalinStringWithKey(key);
        EXPECT_EQ(text.count(QStringLiteral("%@")), key == format ? 1 : 0) << key.toStdString();
        EXPECT_EQ(text.count(u'%'), key == format ? 1 : 0) << key.toStdString();
    }
}

TEST_P(TextsInEachLanguage, FormatMakesOneSentenceWithTheAction)
{
    const QString action = kovalinStringWithKey(QStringLiteral("turn_on_permission_action"));
    QString text = kovalinStringWithKey(QStringLiteral("turn_on_permission_title_format"));
    const qsizetype place = text.indexOf(QStringLiteral("%@"));
    text.replace(place, 2, action);
    EXPECT_EQ(text.indexOf(action), place);
    EXPECT_EQ(text.count(action), 1);
    EXPECT_TRUE(text.endsWith(u'.') || text.endsWith(u'。')) << text.toStdString();
}

TEST_P(TextsInEachLanguage, AreAllDifferent)
{
    QSet<QString> texts;
    for (const QString& key : textKeys()) {
        texts.insert(kovalinStringWithKey(key));
    }
    EXPECT_EQ(texts.size(), textKeys().size());
}

TEST_P(TextsInEachLanguage, LowerLineFitsTheViewsWidth)
{
    // One line of 250 points in 12 point type, of which a Latin letter takes about half and an ideograph the whole.
    for (const QString& key : {QStringLiteral("login_bottom_text"), QStringLiteral("create_avatar_bottom_text")}) {
        const QString text = kovalinStringWithKey(key);
        const auto isWide = [](QChar c) {
            return c.unicode() >= 0x1100;
        };
        const auto wide = static_cast<int>(std::count_if(text.begin(), text.end(), isWide));
        const int narrow = static_cast<int>(text.size()) - wide;
        EXPECT_LE(12 * wide + 6.25 * narrow, 250) << text.toStdString();
    }
}

TEST_P(TextsInEachLanguage, MissingKeyComesBackAsItIs)
{
    for (const QString& key :
         {QStringLiteral("no_such_key"), QStringLiteral("Retry"), QStringLiteral("retry "), QStringLiteral("%@"),
          QStringLiteral("Ünïcødé 贴纸"), QStringLiteral("../en"), QString(10'000, u'x')}) {
        EXPECT_EQ(kovalinStringWithKey(key), key);
    }
    EXPECT_EQ(kovalinStringWithKey(QString()), QString());
}

TEST_P(TextsInEachLanguage, KeyDoesNotEndAtANul)
{
    const QString key = QStringLiteral("retry") + QChar(u'\0') + QStringLiteral("more");
    EXPECT_EQ(kovalinStringWithKey(key), key);
}

INSTANTIATE_TEST_SUITE_P(KovalinString, TextsInEachLanguage, testing::ValuesIn(languages()), nameOf);

bool isWrittenRightToLeft(const QString& text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.direction() == QChar::DirR || c.direction() == QChar::DirAL; });
}

bool isWrittenLeftToRight(const QString& text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.direction() == QChar::DirL; });
}

TEST_P(TextsInEachLanguage, RunInTheLanguagesDirection)
{
    const bool isRightToLeft = QLocale(GetParam()).textDirection() == Qt::RightToLeft;
    for (const QString& key : textKeys()) {
        const QString text = kovalinStringWithKey(key);
        EXPECT_EQ(isWrittenRightToLeft(text), isRightToLeft) << text.toStdString();
        EXPECT_EQ(isWrittenLeftToRight(text), !isRightToLeft) << text.toStdString();
    }
}

TEST(KovalinString, SameKeyHasATextForEachLanguage)
{
    QXSDKKovalinSetPreferredLanguages({QStringLiteral("de")});
    EXPECT_EQ(kovalinStringWithKey(QStringLiteral("create_avatar")), QStringLiteral("Avatar erstellen"));
    QXSDKKovalinSetPreferredLanguages({QStringLiteral("en")});
    EXPECT_EQ(kovalinStringWithKey(QStringLiteral("create_avatar")), QStringLiteral("Create avatar"));
    EXPECT_EQ(kovalinStringWithKey(QStringLiteral("turn_on_permission_title_format")),
              QStringLiteral("To use your avatar stickers here, %@."));
    QXSDKKovalinSetPreferredLanguages({});
}

TEST(KovalinString, IsReadByManyThreadsWhileTheLanguageChanges)
{
    const QString key = QStringLiteral("retry");
    QStringList known;
    for (const QString& language : {QStringLiteral("de"), QStringLiteral("ja")}) {
        QXSDKKovalinSetPreferredLanguages({language});
        known.append(kovalinStringWithKey(key));
    }
    std::atomic<int> strange = 0;
    std::atomic<bool> isDone = false;
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i) {
        readers.emplace_back([&] {
            do {
                strange += known.contains(kovalinStringWithKey(key)) ? 0 : 1;
            } while (!isDone);
        });
    }
    for (int i = 0; i < 100; ++i) {
        QXSDKKovalinSetPreferredLanguages({i % 2 == 0 ? QStringLiteral("de") : QStringLiteral("ja")});
    }
    isDone = true;
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(strange, 0);
    QXSDKKovalinSetPreferredLanguages({});
}

} // namespace
