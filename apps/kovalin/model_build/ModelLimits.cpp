#include "kovalin/model_build/ModelLimits.h"

#include "learned_search/ModelVerification.h"
#include "learned_search/search_model_generated.h"

#include <limits>

using vole::learned_search::kMostTables;

namespace kovalin::cli {

namespace {

constexpr std::uint64_t mostRows = std::numeric_limits<std::int32_t>::max(); // rows are numbered by such numbers
constexpr std::uint64_t mostBytes = FLATBUFFERS_MAX_BUFFER_SIZE;

constexpr auto advice = "; leave rare keys out with --min-count";

} // namespace

std::string limitFault(const ModelSize& size)
{
    if (1 + size.comics + size.keys > kMostTables) {
        return std::to_string(size.keys) + " keys and " + std::to_string(size.comics) + " comics are more than the " +
               std::to_string(kMostTables - 1) + " that a model can hold together" + advice;
    }
    if (size.rows > mostRows) {
        return std::to_string(size.rows) + " rows are more than the " + std::to_string(mostRows) +
               " that a model can hold" + advice;
    }
    if (mostFileBytes(size) >= mostBytes) {
        return "a model of up to " + std::to_string(mostFileBytes(size)) + " bytes is too large, it must stay under " +
               std::to_string(mostBytes) + advice;
    }
    return {};
}

std::uint64_t mostFileBytes(const ModelSize& size)
{
    using namespace vole::learned_search;
    constexpr std::uint64_t word = sizeof(flatbuffers::uoffset_t);
    // A table has a word for its vtable and one for each field, and its place in the vector is another.
    constexpr std::uint64_t perKey = (1 + 5 + 1) * word + 2 * word; // and the key's length, its zero and its padding
    constexpr std::uint64_t perComic = (1 + 2 + 1) * word;
    constexpr std::uint64_t rest = 256; // the root, the lengths of the vectors, a dozen vtables
    return rest + size.keys * perKey + size.keyBytes + size.comics * perComic + size.rows * sizeof(probEntry);
}

} // namespace kovalin::cli
