#pragma once

#include "search/QXSDKKovalinTagRank.h"
#include "search/SearchWords.h"

#include <QtCore/QString>
#include <QtCore/QStringView>
#include <QtCore/QtGlobal>

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

/// Finds the tags that match search words, best first, without looking at the other tags.
///
/// Tags are numbers here: their places in the list that the index is made of, which decides among tags of equal rank. All
/// different words of all tags stand in one sorted list, so that the words that begin with a search word are a run of it;
/// each has the tags that it occurs in. A rank is then computed from word numbers alone.
///
/// Immutable after construction; any thread.
class TagWordIndex final {
public:
    explicit TagWordIndex(const std::vector<QString>& tags);

    /// The tags that match every word, ordered by rank and then by number. `isCandidate` has an entry for each tag; a tag
    /// whose entry is 0 is passed over. An empty span passes over none.
    [[nodiscard]] std::vector<quint32> tagsMatching(const SearchWords& words,
                                                    std::span<const quint8> isCandidate) const;

private:
    /// A search word among the sorted words: those it begins, and the one it equals, if any, which is then the first.
    struct WordRun {
        quint32 first;
        quint32 end;
        bool hasEqual;

        [[nodiscard]] bool holds(quint32 word) const { return word - first < end - first; }
        [[nodiscard]] bool equals(quint32 word) const { return hasEqual && word == first; }
    };

    void numberWords(const std::vector<QString>& tags);
    void listTagsOfWords();

    [[nodiscard]] quint32 wordCount() const { return static_cast<quint32>(_wordStarts.size() - 1); }
    [[nodiscard]] std::u16string_view word(quint32 number) const;
    [[nodiscard]] WordRun runOf(QStringView searchWord) const;
    [[nodiscard]] std::span<const quint32> wordsOf(quint32 tag) const;
    [[nodiscard]] QXSDKKovalinTagRank rankOf(quint32 tag, std::span<const WordRun> searchWords) const;

    std::vector<char16_t> _wordText;     // all words, sorted by code unit, without gaps
    std::vector<quint32> _wordStarts;    // by word, and one more: into _wordText
    std::vector<quint32> _wordTagStarts; // by word, and one more: into _wordTags
    std::vector<quint32> _wordTags;      // the tags of each word, ascending, each once
    std::vector<quint32> _tagWordStarts; // by tag, and one more: into _tagWords
    std::vector<quint32> _tagWords;      // the words of each tag, in the tag's order
};
