#include "search/PrefixSearchIndex.h"

#include "search/Numbering.h"
#include "search/SearchWords.h"
#include "search/StickerDisplayOrder.h"

#include <QtCore/QStringView>

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>

namespace {

/// A tag as the backend sent it, without its decoration.
struct CleanTag {
    QStringView text;
    bool isStarTag;
};

/// Nullopt for a tag that is not for searching.
std::optional<CleanTag> cleaned(QStringView tag)
{
    if (tag.startsWith(u'#') || tag.contains(u':')) {
        return std::nullopt;
    }
    const bool isStarTag = tag.endsWith(u'*');
    return CleanTag{isStarTag ? tag.chopped(1) : tag, isStarTag};
}

/// Which identities a search has met. A thread keeps the memory from one search to the next, cleared where it was marked: to
/// clear all of it would take longer than most searches.
class Marks final {
public:
    explicit Marks(quint32 count) { _blocks.resize(std::max<std::size_t>(_blocks.size(), count / bitsPerBlock + 1)); }
    Marks(const Marks&) = delete;
    Marks& operator=(const Marks&) = delete;
    ~Marks() = default;

    /// Marks one; false if it was marked already.
    bool mark(quint32 number)
    {
        quint64& block = _blocks[number / bitsPerBlock];
        const quint64 bit = quint64{1} << (number % bitsPerBlock);
        const bool isNew = (block & bit) == 0;
        block |= bit;
        return isNew;
    }

    /// To be called for each number that was marked, before the next search.
    void unmark(quint32 number) { _blocks[number / bitsPerBlock] = 0; }

private:
    static constexpr std::size_t bitsPerBlock = 64;
    static thread_local std::vector<quint64> _blocks;
};

thread_local std::vector<quint64> Marks::_blocks;

} // namespace

/// Walks the packs once and leaves the parts of an index.
///
/// A sticker's tags are looked at once. What comes in is kept as pairs of numbers and sorted by tag afterwards, so that each
/// tag's stickers are arranged in one go, with no set for each tag.
class PrefixSearchIndex::Builder final {
public:
    explicit Builder(const KovalinPackList& packs)
    {
        std::size_t stickerCount = 0;
        for (const KovalinPackPtr& pack : packs) {
            stickerCount += pack ? static_cast<std::size_t>(pack->stickers().size()) : 0;
        }
        _stickers->table.reserve(stickerCount);
        for (const KovalinPackPtr& pack : packs) {
            if (pack && !pack->stickers().isEmpty()) {
                addPack(pack);
            }
        }
        _numbers = {};
        _stickers->table.finish();
        arrangeTags();
        numberTagsByFallingCount();
        letTitlesTakePrecedence();
        _stickers->order.shrink_to_fit();
        _parts.stickers = std::move(_stickers);
    }

    Parts takeParts() { return std::move(_parts); }

private:
    /// A tag by its number of arrival.
    struct FoundTag {
        QString text;
        QXSDKKovalinEmotion emotion = QXSDKKovalinEmotionUnknown;
        quint32 arrivalCount = 0;
        Run run;
        bool hasSolovalin = false;
    };

    struct TaggedArrival {
        quint32 tag;
        StickerArrival arrival;
    };

    void addPack(const KovalinPackPtr& pack)
    {
        const quint32 first = _stickers->table.append(pack->stickers());
        auto emotion = QXSDKKovalinEmotionUnknown;
        if (pack->packId()) {
            emotion = KovalinPack::packIdToEmotion().value(*pack->packId(), QXSDKKovalinEmotionUnknown);
        }
        if (pack->visible() && pack->name()) {
            _parts.tagToPack.insert(*pack->name(), pack);
            _titleRuns.insert(*pack->name(), Run{first, static_cast<quint32>(pack->stickers().size())});
        }
        quint32 sticker = first;
        for (const KovalinStickerPtr& taken : pack->stickers()) {
            taken->visitTags([&](QAnyStringView tag) { addTag(utf16(tag), sticker, emotion); });
            ++sticker;
        }
    }

    /// Valid until the next call.
    QStringView utf16(QAnyStringView text)
    {
        text.visit([this](auto view) {
            if constexpr (std::is_same_v<decltype(view), QStringView>) {
                _utf16.assign(view.utf16(), view.utf16() + view.size());
            } else {
                const auto* bytes = reinterpret_cast<const unsigned char*>(view.data());
                _utf16.assign(bytes, bytes + view.size());
            }
        });
        return {_utf16.data(), static_cast<qsizetype>(_utf16.size())};
    }

    void addTag(QStringView tag, quint32 sticker, QXSDKKovalinEmotion emotion)
    {
        const auto clean = cleaned(tag);
        if (!clean) {
            return;
        }
        const quint32 number = _numbers.numberOf(clean->text);
        if (number == _found.size()) {
            _found.emplace_back().text = clean->text.toString();
        }
        FoundTag& found = _found[number];
        ++found.arrivalCount;
        if (emotion != QXSDKKovalinEmotionUnknown) {
            found.emotion = emotion;
        }
        _arrivals.push_back({number, {sticker & 0x7FFFFFFFU, clean->isStarTag ? 1U : 0U}});
    }

    void arrangeTags()
    {
        std::vector<quint32> next(_found.size() + 1, 0);
        for (std::size_t tag = 0; tag < _found.size(); ++tag) {
            next[tag + 1] = next[tag] + _found[tag].arrivalCount;
        }
        std::vector<StickerArrival> byTag(_arrivals.size());
        for (const TaggedArrival& tagged : _arrivals) {
            byTag[next[tagged.tag]++] = tagged.arrival;
        }
        _arrivals = {};

        StickerDisplayOrder displayOrder(_stickers->table);
        _stickers->order.reserve(byTag.size());
        const StickerArrival* arrivals = byTag.data();
        for (FoundTag& tag : _found) {
            tag.run.start = static_cast<quint32>(_stickers->order.size());
            tag.hasSolovalin = displayOrder.arrange({arrivals, tag.arrivalCount}, _stickers->order).hasSolovalin;
            tag.run.count = static_cast<quint32>(_stickers->order.size()) - tag.run.start;
            arrivals += tag.arrivalCount;
        }
    }

    void numberTagsByFallingCount()
    {
        std::vector<quint32> byFallingCount(_found.size());
        std::iota(byFallingCount.begin(), byFallingCount.end(), 0U);
        std::stable_sort(byFallingCount.begin(), byFallingCount.end(),
                         [this](quint32 a, quint32 b) { return _found[a].run.count > _found[b].run.count; });
        _parts.tags.reserve(_found.size());
        _parts.runs.reserve(_found.size());
        _parts.hasSolovalin.reserve(_found.size());
        _parts.emotions.reserve(_found.size());
        for (const quint32 tag : byFallingCount) {
            _parts.tags.push_back(_found[tag].text);
            _parts.runs.push_back(_found[tag].run);
            _parts.hasSolovalin.push_back(_found[tag].hasSolovalin ? 1 : 0);
            _parts.emotions.push_back(static_cast<quint8>(_found[tag].emotion));
        }
        _parts.maxTagOccurrence = _found.empty() ? 0 : _parts.runs.front().count;
    }

    /// A tag that is also a title stands for the whole pack.
    void letTitlesTakePrecedence()
    {
        if (_titleRuns.isEmpty()) {
            return;
        }
        for (std::size_t tag = 0; tag < _parts.tags.size(); ++tag) {
            const auto title = _titleRuns.constFind(_parts.tags[tag]);
            if (title != _titleRuns.constEnd()) {
                const auto start = static_cast<quint32>(_stickers->order.size());
                _stickers->order.resize(start + title->count);
                std::iota(_stickers->order.begin() + start, _stickers->order.end(), title->start);
                _parts.ownRunsOfTitles.emplace_back(static_cast<quint32>(tag), _parts.runs[tag]);
                _parts.runs[tag] = {start, title->count};
            }
        }
    }

    std::shared_ptr<ArrangedStickers> _stickers = std::make_shared<ArrangedStickers>();
    QHash<QString, Run> _titleRuns; // of sticker numbers, not of places
    std::vector<char16_t> _utf16;
    TextNumbering _numbers; // of arrival
    std::vector<FoundTag> _found;
    std::vector<TaggedArrival> _arrivals;
    Parts _parts;
};

// A function of its own, so that what building takes is given back before the words are indexed.
PrefixSearchIndex::Parts PrefixSearchIndex::partsOf(const KovalinPackList& packs)
{
    return Builder(packs).takeParts();
}

PrefixSearchIndex::PrefixSearchIndex(const KovalinPackList& packs)
    : _parts(partsOf(packs))
    , _words(_parts.tags)
{
    fillMaps();
}

// Last, since the maps are the largest part, and indexing the words takes as much again until it is done.
void PrefixSearchIndex::fillMaps()
{
    const auto insertSet = [this](quint32 tag, Run run) {
        _parts.tagToKovalins.insert(
            _parts.tags[tag], QXSDKKovalinSet(_parts.stickers, run.start, run.count, _parts.hasSolovalin[tag] != 0));
    };
    _parts.tagToKovalins.reserve(static_cast<qsizetype>(_parts.tags.size()));
    for (quint32 tag = 0; tag < _parts.tags.size(); ++tag) {
        insertSet(tag, _parts.runs[tag]);
        const auto emotion = static_cast<QXSDKKovalinEmotion>(_parts.emotions[tag]);
        if (emotion != QXSDKKovalinEmotionUnknown) {
            _parts.tagToEmotion.insert(_parts.tags[tag], emotion);
        }
    }
    for (const auto& [tag, run] : _parts.ownRunsOfTitles) {
        insertSet(tag, run);
    }
    _parts.emotions = {};
    _parts.ownRunsOfTitles = {};
}

std::vector<quint32> PrefixSearchIndex::matchingTags(const QString& text,
                                                     const QXSDKKovalinSearchResultTypes& resultTypes) const
{
    const bool wantsFriendvalin = QXSDKKovalinSearchResultTypeHasFriendvalin(resultTypes);
    return _words.tagsMatching(SearchWords(text),
                               wantsFriendvalin ? std::span<const quint8>() : std::span(_parts.hasSolovalin));
}

QStringList PrefixSearchIndex::namesOf(const std::vector<quint32>& tags) const
{
    QStringList names;
    names.reserve(static_cast<qsizetype>(tags.size()));
    for (const quint32 tag : tags) {
        names.append(_parts.tags[tag]);
    }
    return names;
}

QStringList PrefixSearchIndex::tagsForSearchTerm(const QString& text,
                                                 const QXSDKKovalinSearchResultTypes& resultTypes) const
{
    return namesOf(matchingTags(text, resultTypes));
}

PrefixSearchIndex::SearchResult PrefixSearchIndex::search(const QString& text,
                                                          const QXSDKKovalinSearchResultTypes& resultTypes) const
{
    const std::vector<quint32> tags = matchingTags(text, resultTypes);
    SearchResult result{{}, namesOf(tags)};

    const bool wantsFriendvalin = resultTypes.contains(QXSDKKovalinSearchResultTypeFriendvalin);
    const bool wantsSolovalin = resultTypes.contains(QXSDKKovalinSearchResultTypeSolovalin);
    const StickerTable& table = _parts.stickers->table;
    std::size_t mostStickers = 0;
    for (const quint32 tag : tags) {
        mostStickers += _parts.runs[tag].count;
    }
    std::vector<quint32> found;
    found.reserve(std::min<std::size_t>(mostStickers, table.identityCount()));
    Marks seen(table.identityCount());
    for (const quint32 tag : tags) {
        const Run run = _parts.runs[tag];
        for (quint32 place = run.start; place < run.start + run.count; ++place) {
            const quint32 sticker = _parts.stickers->order[place];
            const bool isWanted = table.isFriendvalin(sticker) ? wantsFriendvalin : wantsSolovalin;
            if (isWanted && seen.mark(table.identity(sticker))) {
                found.push_back(sticker);
            }
        }
    }
    for (const quint32 sticker : found) {
        seen.unmark(table.identity(sticker));
    }
    result.stickers = table.stickers(found);
    return result;
}

KovalinStickerList PrefixSearchIndex::searchWithExactMatch(const QString& tag,
                                                           const QXSDKKovalinSearchResultTypes& resultTypes) const
{
    KovalinStickerList stickers;
    if (const auto pack = _parts.tagToPack.constFind(tag); pack != _parts.tagToPack.constEnd()) {
        stickers = (*pack)->stickers();
    } else if (const auto set = _parts.tagToKovalins.constFind(tag); set != _parts.tagToKovalins.constEnd()) {
        stickers = set->array();
    }
    if (!QXSDKKovalinSearchResultTypeHasAll(resultTypes)) {
        const auto isWanted = QXSDKKovalinSearchResultTypeToPredicate(resultTypes);
        stickers.removeIf([&isWanted](const KovalinStickerPtr& sticker) { return !isWanted(*sticker); });
    }
    return stickers;
}
