#include "kovalin/Words.h"

#include "kovalin/AnswerText.h"
#include "kovalin/ClassifierCommand.h"
#include "kovalin/TextTable.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace kovalin::cli {

namespace {

using Classifier = ClassifierCommand::Classifier;

constexpr std::int32_t longestNgram = 5; // words, as in a prediction

struct QueryParts {
    QueryParts(const Classifier& classifier, const std::string& query)
        : words(Classifier::queryToPreprocessedWords(query))
        , ngrams(classifier.generateWordNgrams(words, longestNgram))
    {
    }

    std::vector<std::string> words;
    std::vector<std::string> ngrams;
};

QString partsText(const QueryParts& parts, const std::string& query)
{
    QStringList words;
    for (const std::string& word : parts.words) {
        words.append(QString::fromStdString(word));
    }
    QStringList ngrams;
    for (const std::string& ngram : parts.ngrams) {
        ngrams.append(QString::fromStdString(Classifier::ngramToString(ngram)));
    }
    QString text = answerHeading(QString::fromStdString(query), {counted(words.size(), QStringLiteral("word")),
                                                                 counted(ngrams.size(), QStringLiteral("n-gram"))});
    const auto addList = [&text](const QString& title, const QStringList& list) {
        if (!list.isEmpty()) {
            text += title + TextTable::printable(list.join(QStringLiteral(", "))) + u'\n';
        }
    };
    if (!words.isEmpty()) {
        text += u'\n';
    }
    addList(QStringLiteral("  Words    "), words);
    addList(QStringLiteral("  N-grams  "), ngrams);
    return text + u'\n';
}

} // namespace

void addWordsCommand(CLI::App& program)
{
    ClassifierCommand description;
    description.name = "words";
    description.description = "Show the words of a text, and the keys of a search model that cover them";
    description.queryDescription = "What to take apart";
    description.addAnswer = [](const Classifier& classifier, const std::string& query, auto& answer) {
        const QueryParts parts(classifier, query);
        answer["words"] = parts.words;
        answer["ngrams"] = parts.ngrams;
    };
    description.answerText = [](const Classifier& classifier, const std::string& query, std::int32_t) {
        return partsText(QueryParts(classifier, query), query);
    };
    addClassifierCommand(program, description);
}

} // namespace kovalin::cli
