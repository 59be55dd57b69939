#include "kovalin/model_build/ModelWriter.h"

#include "kovalin/model_build/LearnedModel.h"
#include "learned_search/search_model_generated.h"

#include <cstddef>
#include <cstdint>
#include <vector>

using namespace vole::learned_search;

namespace kovalin::cli {

namespace {

template <typename Table>
using TableVector = flatbuffers::Offset<flatbuffers::Vector<flatbuffers::Offset<Table>>>;

float share(std::int64_t part, std::int64_t whole)
{
    return static_cast<float>(static_cast<double>(part) / static_cast<double>(whole));
}

/// The keys' slices one after the other, in the order of the keys.
flatbuffers::Offset<flatbuffers::Vector<const probEntry*>> addRows(flatbuffers::FlatBufferBuilder& builder,
                                                                   const LearnedModel& model)
{
    probEntry* written = nullptr;
    const auto offset = builder.CreateUninitializedVectorOfStructs(model.rows().size(), &written);
    for (const LearnedModel::Row& row : model.rows()) {
        *written++ = probEntry(model.comics()[row.comic].id, row.factor);
    }
    return offset;
}

TableVector<priorEntry> addComics(flatbuffers::FlatBufferBuilder& builder, const LearnedModel& model)
{
    std::vector<flatbuffers::Offset<priorEntry>> tables;
    tables.reserve(model.comics().size());
    for (const LearnedModel::Comic& comic : model.comics()) {
        tables.push_back(CreatepriorEntry(builder, comic.id, static_cast<float>(comic.share)));
    }
    return builder.CreateVector(tables);
}

TableVector<entryInfoForWord> addKeys(flatbuffers::FlatBufferBuilder& builder, const LearnedModel& model)
{
    std::vector<flatbuffers::Offset<entryInfoForWord>> tables;
    tables.reserve(model.keys().size());
    std::int32_t start = 0;
    for (const LearnedModel::Key& key : model.keys()) {
        const auto count = static_cast<std::int32_t>(key.rowCount);
        const auto word = builder.CreateString(key.text.data(), key.text.size());
        tables.push_back(CreateentryInfoForWord(builder, word, start, count, share(key.count, model.total()),
                                                share(key.endCount, key.count)));
        start += count;
    }
    return builder.CreateVector(tables);
}

} // namespace

ModelSize sizeOf(const LearnedModel& model)
{
    ModelSize size{model.keys().size(), model.comics().size(), model.rows().size(), 0};
    for (const LearnedModel::Key& key : model.keys()) {
        size.keyBytes += key.text.size();
    }
    return size;
}

flatbuffers::DetachedBuffer fileOf(const LearnedModel& model)
{
    // Room for all from the start: growing would hold the file twice.
    flatbuffers::FlatBufferBuilder builder(static_cast<std::size_t>(mostFileBytes(sizeOf(model))));
    const auto keys = addKeys(builder, model);
    const auto comics = addComics(builder, model);
    const auto rows = addRows(builder, model);
    builder.Finish(CreateSearchModel(builder, rows, comics, keys));
    return builder.Release();
}

} // namespace kovalin::cli
