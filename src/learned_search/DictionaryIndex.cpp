#include "learned_search/DictionaryIndex.h"

#include "learned_search/search_model_generated.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace vole::learned_search {

namespace {

constexpr std::size_t mostBeginnings = (std::size_t{1} << 20) / sizeof(std::uint64_t);

/// The first eight bytes as a number that compares as they do; what is missing is filled up.
std::uint64_t beginningOf(std::string_view text, unsigned char filling)
{
    std::uint64_t beginning = 0;
    for (std::size_t at = 0; at < sizeof beginning; ++at) {
        beginning = beginning << 8 | (at < text.size() ? static_cast<unsigned char>(text[at]) : filling);
    }
    return beginning;
}

std::uint64_t beginningOf(const char* word)
{
    return beginningOf({word, strnlen(word, sizeof(std::uint64_t))}, 0);
}

} // namespace

DictionaryIndex::DictionaryIndex(const SearchModel& model)
    : _model(model)
{
    const auto* entries = model.entryInfoForWords();
    _size = entries ? entries->size() : 0;
    const std::size_t stride = _size / mostBeginnings + 1;
    std::vector<std::uint64_t> beginnings;
    beginnings.reserve(_size / stride + 1);
    const char* previous = nullptr;
    for (std::size_t row = 0; row < _size; ++row) {
        const char* const current = word(row);
        if (previous && std::strcmp(previous, current) >= 0) {
            return;
        }
        if (row % stride == 0) {
            beginnings.push_back(beginningOf(current));
        }
        previous = current;
    }
    _stride = stride;
    _beginnings = std::move(beginnings);
}

const char* DictionaryIndex::word(std::size_t row) const
{
    return _model.entryInfoForWords()->Get(static_cast<flatbuffers::uoffset_t>(row))->word()->c_str();
}

/// Less than, equal to or greater than 0 as the row's key is beside `key`.
int DictionaryIndex::compare(std::size_t row, std::string_view key) const
{
    const char* const found = word(row);
    const int order = std::strncmp(found, key.data(), key.size());
    return order == 0 && found[key.size()] != '\0' ? 1 : order;
}

const entryInfoForWord* DictionaryIndex::find(std::string_view key) const
{
    if (_size == 0) {
        return nullptr;
    }
    const auto* entries = _model.entryInfoForWords();
    if (!isSorted()) {
        return entries->LookupByKey(std::string(key).c_str());
    }
    key = key.substr(0, key.find('\0')); // keys end there
    const std::uint64_t beginning = beginningOf(key, 0);
    auto [first, last] = rowsBetween(beginning, beginning);
    while (first < last) {
        const std::size_t middle = first + (last - first) / 2;
        const int order = compare(middle, key);
        if (order == 0) {
            return entries->Get(static_cast<flatbuffers::uoffset_t>(middle));
        }
        if (order < 0) {
            first = middle + 1;
        } else {
            last = middle;
        }
    }
    return nullptr;
}

DictionaryIndex::Rows DictionaryIndex::rowsThatMayBeginWith(std::string_view prefix) const
{
    if (!isSorted()) {
        return {0, _size};
    }
    auto [first, last] = rowsBetween(beginningOf(prefix, 0x00), beginningOf(prefix, 0xFF));
    const auto boundary = [this, prefix, last = last](std::size_t from, auto isBefore) {
        std::size_t count = last - from;
        while (count > 0) {
            const std::size_t half = count / 2;
            if (isBefore(std::strncmp(word(from + half), prefix.data(), prefix.size()))) {
                from += half + 1;
                count -= half + 1;
            } else {
                count = half;
            }
        }
        return from;
    };
    first = boundary(first, [](int order) { return order < 0; });
    return {first, boundary(first, [](int order) { return order <= 0; })};
}

/// The rows whose keys may begin with eight bytes from `lowest` to `greatest`.
DictionaryIndex::Rows DictionaryIndex::rowsBetween(std::uint64_t lowest, std::uint64_t greatest) const
{
    const auto begin = _beginnings.begin();
    const auto first = std::lower_bound(begin, _beginnings.end(), lowest);
    const auto last = std::upper_bound(first, _beginnings.end(), greatest);
    // Between two samples there are rows like either; the sample before the first is below and stays out.
    return {first == begin ? 0 : static_cast<std::size_t>(first - begin - 1) * _stride + 1,
            std::min(static_cast<std::size_t>(last - begin) * _stride, _size)};
}

} // namespace vole::learned_search
