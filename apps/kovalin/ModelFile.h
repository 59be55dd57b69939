#pragma once

#include "learned_search/ModelFileBuffer.h"

#include <cstdint>
#include <memory>
#include <string>

namespace vole::learned_search {
struct SearchModel;
}

namespace kovalin::cli {

/// A model file that the library accepts, mapped into memory for as long as this or the buffer lives.
class ModelFile final {
public:
    /// `path` is in the encoding of the file system. Throws BadInput, naming the file, when it is no regular file, can't be
    /// read, or doesn't pass verification. Never waits for whoever might write into a pipe.
    explicit ModelFile(const std::string& path);

    [[nodiscard]] const std::shared_ptr<vole::learned_search::ModelFileBuffer>& buffer() const { return _buffer; }

    /// Lies in the mapping. What it points at may be outside of its own vectors.
    [[nodiscard]] const vole::learned_search::SearchModel& model() const { return *_model; }

private:
    std::shared_ptr<vole::learned_search::ModelFileBuffer> _buffer;
    const vole::learned_search::SearchModel* _model;
};

/// The tables that verification counts: the model itself, its comics and its keys.
[[nodiscard]] std::uint64_t tableCount(const vole::learned_search::SearchModel& model);

} // namespace kovalin::cli
