#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace vole::learned_search {

struct SearchModel;
struct entryInfoForWord;

/// Finds keys of a model's dictionary. Refers to the model, which must outlive it. Immutable; any thread.
///
/// A sorted dictionary is searched through the first eight bytes of its keys, copied side by side from every key or, where that
/// would take more than 1 MiB, from every so-manieth: a search in the file alone touches three far places for each key that it
/// looks at.
class DictionaryIndex final {
public:
    explicit DictionaryIndex(const SearchModel& model);

    /// Rows of the dictionary: from `first` up to but without `last`.
    struct Rows {
        std::size_t first;
        std::size_t last;
    };

    /// The entry of a key; null where there is none. A dictionary that isn't in order, or that holds a key twice, is searched
    /// the way the file format's own lookup does, and so finds or misses the same keys.
    [[nodiscard]] const entryInfoForWord* find(std::string_view key) const;

    /// The rows whose keys begin with the prefix, if the dictionary is in order; all rows if it isn't.
    [[nodiscard]] Rows rowsThatMayBeginWith(std::string_view prefix) const;

    /// Whether the keys ascend, each one greater than the one before.
    [[nodiscard]] bool isSorted() const { return _stride != 0; }

private:
    [[nodiscard]] const char* word(std::size_t row) const;
    [[nodiscard]] int compare(std::size_t row, std::string_view key) const;
    [[nodiscard]] Rows rowsBetween(std::uint64_t lowest, std::uint64_t greatest) const;

    const SearchModel& _model;
    std::size_t _size = 0;
    // The beginning of the keys of every `_stride`th row; 0 where the dictionary isn't sorted.
    std::size_t _stride = 0;
    std::vector<std::uint64_t> _beginnings;
};

} // namespace vole::learned_search
