#include "learned_search/ModelVerification.h"

#include "learned_search/ModelFileBuffer.h"
#include "learned_search/search_model_generated.h"

namespace vole::learned_search {

namespace {

// What mmap gives for a file that it can't map.
constexpr std::int64_t failedMapping = -1;

flatbuffers::Verifier::Options verificationLimits()
{
    flatbuffers::Verifier::Options options;
    options.max_depth = 64;
    options.max_tables = kMostTables;
    // A file is mapped at a page, but what writes it need not align its fields.
    options.check_alignment = false;
    return options;
}

} // namespace

const SearchModel* verifiedModel(const ModelFileBuffer& buffer)
{
    const std::int64_t address = buffer.getAddress();
    const std::int64_t size = buffer.getSize();
    if (address == failedMapping || address == 0 || size < static_cast<std::int64_t>(sizeof(flatbuffers::uoffset_t)) ||
        size >= static_cast<std::int64_t>(FLATBUFFERS_MAX_BUFFER_SIZE)) {
        return nullptr;
    }
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(static_cast<std::intptr_t>(address));
    const SearchModel* model = GetSearchModel(bytes);
    flatbuffers::Verifier verifier(bytes, static_cast<std::size_t>(size), verificationLimits());
    return model->Verify(verifier) ? model : nullptr;
}

bool hasAllVectors(const SearchModel& model)
{
    return model.comicProbs() && model.comicPriors() && model.entryInfoForWords();
}

} // namespace vole::learned_search
