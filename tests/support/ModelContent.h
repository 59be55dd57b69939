#pragma once

#include "learned_search/ModelFileBuffer.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vole::learned_search::test {

using Bytes = std::vector<std::uint8_t>;

/// What a model file holds, right or wrong: nothing is checked, sorted or completed on its way into a file.
struct ModelContent {
    struct Row {
        std::int32_t comic;
        float prob;
    };
    struct Key {
        std::optional<std::string> word;
        std::int32_t start = 0;
        std::int32_t count = 0;
        float wordPrior = 0;
        float endWordScore = 0;
    };

    // An absent list leaves its vector out of the file.
    std::optional<std::vector<Row>> rows = std::vector<Row>();
    std::optional<std::vector<std::int32_t>> comics = std::vector<std::int32_t>();
    std::optional<std::vector<Key>> keys = std::vector<Key>();

    /// Appends a key and, behind all others, its rows.
    ModelContent& add(const std::string& word, const std::vector<Row>& itsRows, float wordPrior = 0,
                      float endWordScore = 0);
    /// Appends to the comics that a query can return.
    ModelContent& list(const std::vector<std::int32_t>& someComics);
    /// Puts the keys into the order that a file must have.
    ModelContent& sortKeys();

    [[nodiscard]] Bytes toFile() const;
};

/// A model in memory instead of a file, for tests that need many.
class MemoryBuffer final : public ModelFileBuffer {
public:
    /// `misalignment`: by how many bytes the model's first byte misses an address that can hold anything.
    explicit MemoryBuffer(const Bytes& model, std::size_t misalignment = 0);

    [[nodiscard]] std::int64_t getAddress() const override;
    [[nodiscard]] std::int64_t getSize() const override;
    [[nodiscard]] bool stateIsValid() const override { return true; }
    void dispose() override {}

private:
    std::size_t _size;
    std::size_t _misalignment;
    std::unique_ptr<std::uint8_t[]> _bytes; // just as many as there are, so that a read past the end is seen
};

[[nodiscard]] std::shared_ptr<MemoryBuffer> bufferOf(const Bytes& model);
[[nodiscard]] std::shared_ptr<MemoryBuffer> bufferOf(const ModelContent& model);

/// A file of a test's own, which goes with it.
class TemporaryFile final {
public:
    explicit TemporaryFile(const Bytes& content);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] const std::string& path() const { return _path; }

private:
    std::string _path;
};

} // namespace vole::learned_search::test
