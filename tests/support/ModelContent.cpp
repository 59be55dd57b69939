#include "support/ModelContent.h"

#include "learned_search/search_model_generated.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace vole::learned_search::test {

namespace {

flatbuffers::Offset<entryInfoForWord> addKey(flatbuffers::FlatBufferBuilder& builder, const ModelContent::Key& key)
{
    const auto word = key.word ? builder.CreateString(*key.word) : flatbuffers::Offset<flatbuffers::String>();
    // Not through the generated builder, which insists on a word.
    const auto start = builder.StartTable();
    if (key.word) {
        builder.AddOffset(entryInfoForWord::VT_WORD, word);
    }
    builder.AddElement(entryInfoForWord::VT_ENTRYSTARTIDX, key.start, 0);
    builder.AddElement(entryInfoForWord::VT_NUMENTRIES, key.count, 0);
    builder.AddElement(entryInfoForWord::VT_WORDPRIOR, key.wordPrior, 0.0F);
    builder.AddElement(entryInfoForWord::VT_ENDWORDSCORE, key.endWordScore, 0.0F);
    return flatbuffers::Offset<entryInfoForWord>(builder.EndTable(start));
}

} // namespace

ModelContent& ModelContent::add(const std::string& word, const std::vector<Row>& itsRows, float wordPrior,
                                float endWordScore)
{
    keys->push_back({word, static_cast<std::int32_t>(rows->size()), static_cast<std::int32_t>(itsRows.size()),
                     wordPrior, endWordScore});
    rows->insert(rows->end(), itsRows.begin(), itsRows.end());
    return *this;
}

ModelContent& ModelContent::list(const std::vector<std::int32_t>& someComics)
{
    comics->insert(comics->end(), someComics.begin(), someComics.end());
    return *this;
}

ModelContent& ModelContent::sortKeys()
{
    std::stable_sort(keys->begin(), keys->end(), [](const Key& a, const Key& b) { return a.word < b.word; });
    return *this;
}

Bytes ModelContent::toFile() const
{
    flatbuffers::FlatBufferBuilder builder;
    flatbuffers::Offset<flatbuffers::Vector<const probEntry*>> rowsOffset;
    flatbuffers::Offset<flatbuffers::Vector<flatbuffers::Offset<priorEntry>>> comicsOffset;
    flatbuffers::Offset<flatbuffers::Vector<flatbuffers::Offset<entryInfoForWord>>> keysOffset;
    if (keys) {
        std::vector<flatbuffers::Offset<entryInfoForWord>> tables;
        for (const Key& key : *keys) {
            tables.push_back(addKey(builder, key));
        }
        keysOffset = builder.CreateVector(tables);
    }
    if (comics) {
        std::vector<flatbuffers::Offset<priorEntry>> tables;
        for (const std::int32_t comic : *comics) {
            tables.push_back(CreatepriorEntry(builder, comic, 0.5F));
        }
        comicsOffset = builder.CreateVector(tables);
    }
    if (rows) {
        std::vector<probEntry> entries;
        for (const Row& row : *rows) {
            entries.emplace_back(row.comic, row.prob);
        }
        rowsOffset = builder.CreateVectorOfStructs(entries);
    }
    builder.Finish(CreateSearchModel(builder, rowsOffset, comicsOffset, keysOffset));
    return {builder.GetBufferPointer(), builder.GetBufferPointer() + builder.GetSize()};
}

MemoryBuffer::MemoryBuffer(const Bytes& model, std::size_t misalignment)
    : _size(model.size())
    , _misalignment(misalignment)
    , _bytes(std::make_unique<std::uint8_t[]>(model.size() + misalignment))
{
    if (!model.empty()) {
        std::memcpy(_bytes.get() + misalignment, model.data(), model.size());
    }
}

std::int64_t MemoryBuffer::getAddress() const
{
    return static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(_bytes.get() + _misalignment));
}

std::int64_t MemoryBuffer::getSize() const
{
    return static_cast<std::int64_t>(_size);
}

std::shared_ptr<MemoryBuffer> bufferOf(const Bytes& model)
{
    return std::make_shared<MemoryBuffer>(model);
}

std::shared_ptr<MemoryBuffer> bufferOf(const ModelContent& model)
{
    return bufferOf(model.toFile());
}

TemporaryFile::TemporaryFile(const Bytes& content)
    : _path((std::filesystem::temp_directory_path() / "kovalin-model-XXXXXX").string())
{
    const int descriptor = ::mkstemp(_path.data());
    if (descriptor < 0 || ::write(descriptor, content.data(), content.size()) != static_cast<ssize_t>(content.size())) {
        throw std::runtime_error("can't write a test's file");
    }
    ::close(descriptor);
}

TemporaryFile::~TemporaryFile()
{
    ::unlink(_path.c_str());
}

} // namespace vole::learned_search::test
