#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vole::learned_search {
struct SearchModel;
}

namespace kovalin::cli {

/// A rule for model files that a model breaks. The library doesn't look: it relies on them.
struct BrokenInvariant {
    const char* name;    // for programs, as in "keys-ascending"
    const char* rule;    // for people
    std::uint64_t count; // of what breaks it, at least 1
    std::string example; // the first of these in the file; parts of it may be no text
};

/// All rules that the model breaks. The model has passed verification; nothing else that it says is relied on.
[[nodiscard]] std::vector<BrokenInvariant> brokenInvariants(const vole::learned_search::SearchModel& model);

} // namespace kovalin::cli
