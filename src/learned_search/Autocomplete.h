#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vole::learned_search {

class DictionaryIndex;
struct SearchModel;

/// The keys that begin with the prefix and may be offered as a completion, each in display form, the most popular first. The
/// dictionary is that of the model.
[[nodiscard]] std::vector<std::string> completionsOf(std::string_view prefix, const SearchModel& model,
                                                     const DictionaryIndex& dictionary);

/// A key as people read it: with a blank for each delimiter.
[[nodiscard]] std::string ngramToString(std::string_view ngram);

} // namespace vole::learned_search
