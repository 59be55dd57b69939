#include "kovalin/SearchOutput.h"

#include "kovalin/AnswerText.h"
#include "kovalin/TextTable.h"
#include "shared/StandardStreams.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>

#include <optional>

namespace kovalin::cli {

namespace {

QByteArray jsonText(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray jsonText(const QString& text)
{
    // A text is no document of its own; a list of it is.
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return list.sliced(1, list.size() - 2);
}

QJsonValue jsonValue(const std::optional<QString>& text)
{
    return text ? QJsonValue(*text) : QJsonValue(QJsonValue::Null);
}

/// Element by element, since an answer can be as large as all the packs.
template <typename ElementText>
void writeJsonList(qsizetype count, ElementText elementText)
{
    writeOutput("[");
    for (qsizetype i = 0; i < count; ++i) {
        if (i > 0) {
            writeOutput(",");
        }
        writeOutput(elementText(i));
    }
    writeOutput("]");
}

QString rankInWords(QXSDKKovalinTagRank rank)
{
    switch (rank) {
    case QXSDKKovalinTagRankExact:
        return QStringLiteral("exact");
    case QXSDKKovalinTagRankWordsLeading:
        return QStringLiteral("words, leading");
    case QXSDKKovalinTagRankWords:
        return QStringLiteral("words");
    case QXSDKKovalinTagRankPrefixLeading:
        return QStringLiteral("prefix, leading");
    case QXSDKKovalinTagRankPrefix:
        return QStringLiteral("prefix");
    case QXSDKKovalinTagRankNone:
        break;
    }
    return QStringLiteral("none");
}

QString tagTable(const SearchAnswer& answer, bool explain, qsizetype shown)
{
    using Column = TextTable::Column;
    QList<Column> columns{{QStringLiteral("Tag")}};
    if (explain) {
        columns.append({Column{QStringLiteral("Rank")}, Column{QStringLiteral("Score"), TextTable::Align::Right}});
    }
    TextTable table(columns);
    for (qsizetype i = 0; i < shown; ++i) {
        QStringList row{answer.tags[i]};
        if (explain) {
            const auto& score = answer.scores[i];
            row.append(score ? QStringList{rankInWords(score->rank), QString::number(score->score)}
                             : QStringList{QStringLiteral("learned"), QStringLiteral("-")});
        }
        table.addRow(row);
    }
    return table.toString();
}

QString stickerTable(const SearchAnswer& answer, qsizetype shown)
{
    TextTable table({{QStringLiteral("#"), TextTable::Align::Right},
                     {QStringLiteral("Comic")},
                     {QStringLiteral("Template or URL")}});
    for (qsizetype i = 0; i < shown; ++i) {
        const KovalinSticker& sticker = *answer.stickers[i];
        const auto image = sticker.templateId() ? sticker.templateId() : sticker.url();
        table.addRow({QString::number(i + 1), sticker.comicId().value_or(QStringLiteral("-")),
                      image.value_or(QStringLiteral("-"))});
    }
    return table.toString();
}

} // namespace

void writeAnswerAsJson(const SearchAnswer& answer, bool explain)
{
    writeOutput("{\"query\":");
    writeOutput(jsonText(answer.query));
    writeOutput(",\"stickers\":");
    writeJsonList(answer.stickers.size(), [&answer](qsizetype i) {
        const KovalinSticker& sticker = *answer.stickers[i];
        return jsonText(QJsonObject{{QStringLiteral("comic_id"), jsonValue(sticker.comicId())},
                                    {QStringLiteral("url"), jsonValue(sticker.url())}});
    });
    writeOutput(",\"tags\":");
    writeJsonList(answer.tags.size(), [&answer](qsizetype i) { return jsonText(answer.tags[i]); });
    if (explain) {
        writeOutput(",\"explain\":");
        writeJsonList(answer.scores.size(), [&answer](qsizetype i) {
            const auto& score = answer.scores[i];
            return jsonText(QJsonObject{{QStringLiteral("tag"), answer.tags[i]},
                                        {QStringLiteral("rank"), score ? QJsonValue(score->rank) : QJsonValue()},
                                        {QStringLiteral("score"), score ? QJsonValue(score->score) : QJsonValue()}});
        });
    }
    writeOutput("}\n");
    flushOutput();
}

void writeAnswerAsTable(const SearchAnswer& answer, bool explain, qsizetype limit)
{
    QString text = answerHeading(answer.query, {counted(answer.tags.size(), QStringLiteral("tag")),
                                                counted(answer.stickers.size(), QStringLiteral("sticker"))});
    if (!answer.tags.isEmpty()) {
        const qsizetype shown = shownOf(answer.tags.size(), limit);
        text +=
            u'\n' + tagTable(answer, explain && !answer.scores.isEmpty(), shown) + moreLine(answer.tags.size() - shown);
    }
    if (!answer.stickers.isEmpty()) {
        const qsizetype shown = shownOf(answer.stickers.size(), limit);
        text += u'\n' + stickerTable(answer, shown) + moreLine(answer.stickers.size() - shown);
    }
    text += u'\n';
    writeOutput(text.toUtf8());
    flushOutput();
}

} // namespace kovalin::cli
