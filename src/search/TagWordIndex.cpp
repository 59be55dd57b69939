#include "search/TagWordIndex.h"

#include "search/Numbering.h"

#include <QtCore/QVarLengthArray>

#include <algorithm>
#include <array>
#include <bit>
#include <numeric>

namespace {

/// Most answers are few tags, which need no memory of their own.
using TagList = QVarLengthArray<quint32, 32>;

/// Sorts different numbers below `limit`, leaving each once, in time that doesn't grow faster than their count.
void sortUnique(TagList& numbers, quint32 limit)
{
    constexpr std::size_t bitsPerBlock = 64;
    const std::size_t blockCount = limit / bitsPerBlock + 1;
    // Comparing wins as long as there are few numbers beside the blocks that would be cleared and walked.
    if (static_cast<std::size_t>(numbers.size()) < 32 + blockCount / 4) {
        if (!std::is_sorted(numbers.cbegin(), numbers.cend())) {
            std::sort(numbers.begin(), numbers.end());
        }
        numbers.resize(std::unique(numbers.begin(), numbers.end()) - numbers.begin());
        return;
    }
    std::vector<quint64> blocks(blockCount, 0);
    for (const quint32 number : numbers) {
        blocks[number / bitsPerBlock] |= quint64{1} << (number % bitsPerBlock);
    }
    numbers.clear();
    for (std::size_t block = 0; block < blockCount; ++block) {
        for (quint64 bits = blocks[block]; bits != 0; bits &= bits - 1) {
            numbers.push_back(static_cast<quint32>(block * bitsPerBlock) +
                              static_cast<quint32>(std::countr_zero(bits)));
        }
    }
}

} // namespace

TagWordIndex::TagWordIndex(const std::vector<QString>& tags)
{
    numberWords(tags);
    listTagsOfWords();
}

void TagWordIndex::numberWords(const std::vector<QString>& tags)
{
    // Words get numbers in the order in which they are met first, and their sorted numbers when all are known.
    TextNumbering words;
    _tagWordStarts.reserve(tags.size() + 1);
    _tagWordStarts.push_back(0);
    for (const QString& tag : tags) {
        for (const QStringView tagWord : SearchWords(tag)) {
            _tagWords.push_back(words.numberOf(tagWord));
        }
        _tagWordStarts.push_back(static_cast<quint32>(_tagWords.size()));
    }
    _tagWords.shrink_to_fit();

    std::vector<quint32> bySortedNumber(words.count());
    std::iota(bySortedNumber.begin(), bySortedNumber.end(), 0U);
    std::sort(bySortedNumber.begin(), bySortedNumber.end(),
              [&words](quint32 a, quint32 b) { return words.text(a) < words.text(b); });

    std::vector<quint32> sortedNumbers(words.count());
    _wordText.reserve(words.totalLength());
    _wordStarts.reserve(words.count() + 1);
    _wordStarts.push_back(0);
    for (quint32 sorted = 0; sorted < bySortedNumber.size(); ++sorted) {
        sortedNumbers[bySortedNumber[sorted]] = sorted;
        const QStringView text = words.text(bySortedNumber[sorted]);
        _wordText.insert(_wordText.end(), text.utf16(), text.utf16() + text.size());
        _wordStarts.push_back(static_cast<quint32>(_wordText.size()));
    }
    for (quint32& number : _tagWords) {
        number = sortedNumbers[number];
    }
}

void TagWordIndex::listTagsOfWords()
{
    // Count, make room, fill. Tags come in ascending order, so a word that a tag repeats has it for its last one.
    const auto tagCount = static_cast<quint32>(_tagWordStarts.size() - 1);
    constexpr quint32 none = ~0U;
    std::vector<quint32> lastTag(wordCount(), none);
    _wordTagStarts.assign(wordCount() + 1, 0);
    for (quint32 tag = 0; tag < tagCount; ++tag) {
        for (const quint32 number : wordsOf(tag)) {
            if (std::exchange(lastTag[number], tag) != tag) {
                ++_wordTagStarts[number + 1];
            }
        }
    }
    std::partial_sum(_wordTagStarts.cbegin(), _wordTagStarts.cend(), _wordTagStarts.begin());
    _wordTags.resize(_wordTagStarts.back());
    std::vector<quint32> next(_wordTagStarts.cbegin(), _wordTagStarts.cend() - 1);
    std::fill(lastTag.begin(), lastTag.end(), none);
    for (quint32 tag = 0; tag < tagCount; ++tag) {
        for (const quint32 number : wordsOf(tag)) {
            if (std::exchange(lastTag[number], tag) != tag) {
                _wordTags[next[number]++] = tag;
            }
        }
    }
}

std::u16string_view TagWordIndex::word(quint32 number) const
{
    const quint32 start = _wordStarts[number];
    return {_wordText.data() + start, _wordStarts[number + 1] - start};
}

std::span<const quint32> TagWordIndex::wordsOf(quint32 tag) const
{
    return std::span(_tagWords).subspan(_tagWordStarts[tag], _tagWordStarts[tag + 1] - _tagWordStarts[tag]);
}

TagWordIndex::WordRun TagWordIndex::runOf(QStringView searchWord) const
{
    const std::u16string_view prefix(searchWord.utf16(), static_cast<std::size_t>(searchWord.size()));
    const auto firstThatIsNot = [this](quint32 start, quint32 end, auto is) {
        while (start < end) {
            const quint32 middle = start + (end - start) / 2;
            if (is(word(middle))) {
                start = middle + 1;
            } else {
                end = middle;
            }
        }
        return start;
    };
    const auto begins = [prefix](std::u16string_view text) {
        return text.starts_with(prefix);
    };
    const quint32 first = firstThatIsNot(0, wordCount(), [prefix](std::u16string_view text) { return text < prefix; });
    // Runs are short beside the list, so the end is looked for in steps that double.
    quint32 known = first;
    quint32 step = 1;
    while (step <= wordCount() - known && begins(word(known + step - 1))) {
        known += step;
        step *= 2;
    }
    const quint32 end = firstThatIsNot(known, known + std::min(step, wordCount() - known), begins);
    return {first, end, first < end && word(first).size() == prefix.size()};
}

QXSDKKovalinTagRank TagWordIndex::rankOf(quint32 tag, std::span<const WordRun> searchWords) const
{
    const auto tagWords = wordsOf(tag);
    bool allOccur = true;
    for (const WordRun& searchWord : searchWords) {
        bool begins = false;
        bool occurs = false;
        for (const quint32 tagWord : tagWords) {
            begins = begins || searchWord.holds(tagWord);
            occurs = occurs || searchWord.equals(tagWord);
        }
        if (!begins) {
            return QXSDKKovalinTagRankNone;
        }
        allOccur = allOccur && occurs;
    }

    const bool leads = searchWords.front().equals(tagWords.front());
    if (!allOccur) {
        return leads ? QXSDKKovalinTagRankPrefixLeading : QXSDKKovalinTagRankPrefix;
    }
    if (std::equal(searchWords.begin(), searchWords.end(), tagWords.begin(), tagWords.end(),
                   [](const WordRun& searchWord, quint32 tagWord) { return searchWord.equals(tagWord); })) {
        return QXSDKKovalinTagRankExact;
    }
    return leads ? QXSDKKovalinTagRankWordsLeading : QXSDKKovalinTagRankWords;
}

std::vector<quint32> TagWordIndex::tagsMatching(const SearchWords& words, std::span<const quint8> isCandidate) const
{
    if (words.isEmpty()) {
        return {};
    }
    const auto occurrenceCount = [this](const WordRun& run) {
        return _wordTagStarts[run.end] - _wordTagStarts[run.first];
    };
    QVarLengthArray<WordRun, 8> runs;
    const WordRun* rarest = nullptr;
    for (const QStringView searchWord : words) {
        const WordRun run = runOf(searchWord);
        if (run.first == run.end) {
            return {};
        }
        runs.append(run);
    }
    rarest = std::min_element(runs.cbegin(), runs.cend(), [&](const WordRun& a, const WordRun& b) {
        return occurrenceCount(a) < occurrenceCount(b);
    });

    // Every match holds a word of the rarest run, so its tags are all there is to look at. One may come up several times.
    std::array<TagList, QXSDKKovalinTagRankNone> byRank;
    for (quint32 place = _wordTagStarts[rarest->first]; place < _wordTagStarts[rarest->end]; ++place) {
        const quint32 tag = _wordTags[place];
        if (!isCandidate.empty() && isCandidate[tag] == 0) {
            continue;
        }
        const auto rank = rankOf(tag, std::span(runs.cbegin(), static_cast<std::size_t>(runs.size())));
        if (rank != QXSDKKovalinTagRankNone) {
            byRank.at(static_cast<std::size_t>(rank)).push_back(tag);
        }
    }

    std::vector<quint32> matching;
    const auto tagCount = static_cast<quint32>(_tagWordStarts.size() - 1);
    for (TagList& tags : byRank) {
        sortUnique(tags, tagCount);
        matching.insert(matching.end(), tags.cbegin(), tags.cend());
    }
    return matching;
}
