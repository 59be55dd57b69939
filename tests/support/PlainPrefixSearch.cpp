#include "support/PlainPrefixSearch.h"

#include <QtCore/QChar>
#include <QtCore/QLocale>

#include <algorithm>

namespace kovalin::test {

namespace {

bool isSeparator(char32_t character)
{
    const auto category = QChar::category(character);
    return (category >= QChar::Punctuation_Connector && category <= QChar::Punctuation_Other) ||
           category == QChar::Separator_Space || character == U'\t';
}

} // namespace

void PlainPrefixSearch::OrderedSet::append(const KovalinStickerPtr& sticker)
{
    if (!contains(sticker)) {
        _list.append(sticker);
        _members.insert({sticker});
    }
}

void PlainPrefixSearch::OrderedSet::prepend(const KovalinStickerPtr& sticker)
{
    if (!contains(sticker)) {
        _list.prepend(sticker);
        _members.insert({sticker});
    }
}

void PlainPrefixSearch::OrderedSet::remove(const KovalinStickerPtr& sticker)
{
    if (_members.remove({sticker})) {
        _list.removeIf([&sticker](const KovalinStickerPtr& other) { return other->isEqual(*sticker); });
    }
}

void PlainPrefixSearch::SetBuilder::addKovalin(const KovalinStickerPtr& sticker, bool isStarTag)
{
    if (starTagged.contains(sticker)) {
        return;
    }
    OrderedSet& segment = isStarTag ? starTagged : nonStarTagged;
    if (sticker->isFriendvalin()) {
        segment.prepend(sticker);
    } else {
        hasSolovalin = true;
        segment.append(sticker);
    }
    if (isStarTag) {
        nonStarTagged.remove(sticker);
    }
}

KovalinStickerList PlainPrefixSearch::SetBuilder::build() const
{
    return starTagged.list() + nonStarTagged.list();
}

void PlainPrefixSearch::processPacks(const KovalinPackList& packs)
{
    QHash<QString, SetBuilder> builders;
    QHash<QString, KovalinPackPtr> titles;
    QHash<QString, QXSDKKovalinEmotion> emotions;
    for (const KovalinPackPtr& pack : packs) {
        if (pack->stickers().isEmpty()) {
            continue;
        }
        const auto& emotionTable = KovalinPack::packIdToEmotion();
        const auto emotion = emotionTable.constFind(pack->packId().value_or(QString()));
        if (pack->visible() && pack->name()) {
            titles.insert(*pack->name(), pack);
        }
        for (const KovalinStickerPtr& sticker : pack->stickers()) {
            const QStringList tags = sticker->tags().value_or(QStringList());
            for (const QString& rawTag : tags) {
                if (rawTag.contains(u':') || rawTag.startsWith(u'#')) {
                    continue;
                }
                QString tag = rawTag;
                const bool isStarTag = tag.endsWith(u'*');
                if (isStarTag) {
                    tag.chop(1);
                }
                builders[tag].addKovalin(sticker, isStarTag);
                if (emotion != emotionTable.constEnd()) {
                    emotions.insert(tag, *emotion);
                }
            }
        }
    }

    QHash<QString, BuiltSet> sets;
    qint64 largest = 0;
    for (auto builder = builders.cbegin(); builder != builders.cend(); ++builder) {
        const BuiltSet set{builder->hasSolovalin, builder->build()};
        largest = std::max<qint64>(largest, set.array.size());
        sets.insert(builder.key(), set);
    }
    tagToKovalins = sets;
    tagToPack = titles;
    tagToEmotion = emotions;
    maxTagOccurrence = largest;
}

QStringList PlainPrefixSearch::wordsForSearchTerm(const QString& text)
{
    // A locale lower-cases whole texts, with the form that a capital sigma takes at the end of a word.
    QString lower = text.contains(u'\u03A3') ? QLocale(QLocale::English).toLower(text) : text.toLower();
    lower.remove(u'\'');
    QStringList words;
    qsizetype start = 0;
    qsizetype next = 0;
    for (qsizetype place = 0; place < lower.size(); place = next) {
        next = place + 1;
        char32_t character = lower[place].unicode();
        if (lower[place].isHighSurrogate() && next < lower.size() && lower[next].isLowSurrogate()) {
            character = QChar::surrogateToUcs4(lower[place], lower[next++]);
        }
        if (isSeparator(character)) {
            words.append(lower.sliced(start, place - start));
            start = next;
        }
    }
    words.append(lower.sliced(start));
    words.removeAll(QString());
    return words;
}

int PlainPrefixSearch::rankForTag(const QString& tag, const QStringList& termWords)
{
    const QStringList tagWords = wordsForSearchTerm(tag);
    if (tagWords == termWords) {
        return 0;
    }
    bool allOccur = true;
    bool allBegin = true;
    for (const QString& termWord : termWords) {
        allOccur = allOccur && tagWords.contains(termWord);
        allBegin = allBegin && std::any_of(tagWords.cbegin(), tagWords.cend(), [&termWord](const QString& tagWord) {
                       return tagWord.startsWith(termWord);
                   });
    }
    if (allOccur) {
        return tagWords.first() == termWords.first() ? 1 : 2;
    }
    if (allBegin) {
        return tagWords.first() == termWords.first() ? 3 : 4;
    }
    return 5;
}

QList<PlainPrefixSearch::ScoredTag>
PlainPrefixSearch::tagsForSearchTerm(const QString& text, const QXSDKKovalinSearchResultTypes& types) const
{
    const QStringList termWords = wordsForSearchTerm(text);
    if (termWords.isEmpty()) {
        return {};
    }
    const bool wantsFriendvalin = types.contains(QXSDKKovalinSearchResultTypeFriendvalin);
    QList<ScoredTag> candidates;
    for (auto set = tagToKovalins.cbegin(); set != tagToKovalins.cend(); ++set) {
        if (!set->hasSolovalin && !wantsFriendvalin) {
            continue;
        }
        const int rank = rankForTag(set.key(), termWords);
        if (rank != 5) {
            candidates.append({set.key(), rank * maxTagOccurrence + maxTagOccurrence - set->array.size()});
        }
    }
    std::sort(candidates.begin(), candidates.end(),
              [](const ScoredTag& a, const ScoredTag& b) { return a.score < b.score; });
    return candidates;
}

KovalinStickerList PlainPrefixSearch::stickersForTags(const QStringList& tags,
                                                      const QXSDKKovalinSearchResultTypes& types) const
{
    OrderedSet stickers;
    for (const QString& tag : tags) {
        for (const KovalinStickerPtr& sticker : searchWithExactMatch(tag, types)) {
            stickers.append(sticker);
        }
    }
    return stickers.list();
}

PlainPrefixSearch::Result PlainPrefixSearch::search(const QString& text,
                                                    const QXSDKKovalinSearchResultTypes& types) const
{
    Result result;
    result.tags = tagsForSearchTerm(text, types);
    QStringList names;
    for (const ScoredTag& tag : result.tags) {
        names.append(tag.tag);
    }
    result.stickers = stickersForTags(names, types);
    return result;
}

KovalinStickerList PlainPrefixSearch::searchWithExactMatch(const QString& tag,
                                                           const QXSDKKovalinSearchResultTypes& types) const
{
    const auto pack = tagToPack.constFind(tag);
    const KovalinStickerList candidates =
        pack != tagToPack.constEnd() ? (*pack)->stickers() : tagToKovalins.value(tag).array;
    KovalinStickerList kept;
    for (const KovalinStickerPtr& sticker : candidates) {
        const auto type =
            sticker->isFriendvalin() ? QXSDKKovalinSearchResultTypeFriendvalin : QXSDKKovalinSearchResultTypeSolovalin;
        if (types.contains(type)) {
            kept.append(sticker);
        }
    }
    return kept;
}

QXSDKKovalinEmotion PlainPrefixSearch::emotionForTag(const QString& tag) const
{
    return tagToEmotion.value(tag, QXSDKKovalinEmotionUnknown);
}

KovalinPackPtr PlainPrefixSearch::packForTag(const QString& tag) const
{
    return tagToPack.value(tag);
}

} // namespace kovalin::test
