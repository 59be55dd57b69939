#include "picker/config/QXSDKKovalinLanguage.h"
#include "picker/config/TextKeys.h"
#include "support/QtPrinting.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QLocale>
#include <QtCore/QXmlStreamReader>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

/// What a translation source says, as far as a mistake in it would get lost on the way into the library.
struct TranslationSource {
    QString language;
    QStringList ids;
    QHash<QString, QString> sources;      // the English text beside each key
    QHash<QString, QString> translations; // the text of each key
    QStringList marks;                    // "unfinished" and the like, on any translation
    QString error;
};

TranslationSource readSource(const QString& path)
{
    TranslationSource source;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        source.error = file.errorString();
        return source;
    }
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == u"TS") {
            source.language = xml.attributes().value(QLatin1String("language")).toString();
        } else if (xml.name() == u"message") {
            source.ids.append(xml.attributes().value(QLatin1String("id")).toString());
        } else if (xml.name() == u"source") {
            source.sources.insert(source.ids.last(), xml.readElementText());
        } else if (xml.name() == u"translation") {
            const QString mark = xml.attributes().value(QLatin1String("type")).toString();
            if (!mark.isEmpty()) {
                source.marks.append(mark);
            }
            source.translations.insert(source.ids.last(), xml.readElementText());
        }
    }
    source.error = xml.errorString();
    return source;
}

QString pathOf(const QString& language)
{
    return QStringLiteral(KOVALIN_TRANSLATIONS_DIR) + u'/' + language + QStringLiteral(".ts");
}

class TranslationSources : public testing::TestWithParam<QString> {};

TEST_P(TranslationSources, AreWholeAndFinished)
{
    const TranslationSource source = readSource(pathOf(GetParam()));
    EXPECT_EQ(source.error, QString());
    EXPECT_THAT(source.ids, testing::UnorderedElementsAreArray(textKeys()));
    EXPECT_EQ(source.marks, QStringList());
    for (const QString& text : source.translations) {
        EXPECT_NE(text, QString());
    }
}

TEST_P(TranslationSources, AreInTheLanguageThatTheyAreNamedFor)
{
    const QLocale named(GetParam());
    const QLocale told(readSource(pathOf(GetParam())).language);
    EXPECT_EQ(told.language(), named.language());
    EXPECT_EQ(told.script(), named.script());
}

TEST_P(TranslationSources, ShowTheEnglishTextsToTranslators)
{
    EXPECT_EQ(readSource(pathOf(GetParam())).sources, readSource(pathOf(QStringLiteral("en"))).translations);
}

std::vector<QString> allLanguages()
{
    const QStringList languages = QXSDKKovalinAvailableLanguages();
    return {languages.begin(), languages.end()};
}

INSTANTIATE_TEST_SUITE_P(Languages, TranslationSources, testing::ValuesIn(allLanguages()),
                         [](const auto& test) { return QString(test.param).replace(u'-', u'_').toStdString(); });

TEST(TranslationSources, AreAllBuiltIn)
{
    QStringList languages = QDir(QStringLiteral(KOVALIN_TRANSLATIONS_DIR)).entryList({QStringLiteral("*.ts")});
    for (QString& name : languages) {
        name.chop(3);
    }
    EXPECT_THAT(QXSDKKovalinAvailableLanguages(), testing::UnorderedElementsAreArray(languages));
}

} // namespace
