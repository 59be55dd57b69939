#include "kovalin/ModelFile.h"

#include "learned_search/AutoClosingFileDescriptor.h"
#include "learned_search/ModelVerification.h"
#include "learned_search/search_model_generated.h"
#include "shared/BadInput.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <limits>
#include <optional>
#include <system_error>

using namespace vole::learned_search;

namespace kovalin::cli {

namespace {

using Fault = std::optional<std::string>;

std::string systemError(int number)
{
    return std::generic_category().message(number);
}

/// What a path leads to, where it isn't a file that can be mapped.
Fault kindFault(mode_t mode)
{
    if (S_ISREG(mode)) {
        return std::nullopt;
    }
    if (S_ISDIR(mode)) {
        return systemError(EISDIR);
    }
    return std::string("is no regular file but ") + (S_ISFIFO(mode)   ? "a pipe"
                                                     : S_ISSOCK(mode) ? "a socket"
                                                                      : "a device");
}

Fault sizeFault(off_t size)
{
    if (size == 0) {
        return "is empty";
    }
    if (size < static_cast<off_t>(sizeof(flatbuffers::uoffset_t))) {
        return "is too short for a search model: " + std::to_string(size) + (size == 1 ? " byte" : " bytes");
    }
    if (size >= static_cast<off_t>(FLATBUFFERS_MAX_BUFFER_SIZE)) {
        return "is too large for a search model: " + std::to_string(size) + " bytes";
    }
    return std::nullopt;
}

/// What keeps the file from being mapped. Looks before it opens: opening a pipe may wait for ever.
Fault fileFault(const std::string& path)
{
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return systemError(errno);
    }
    if (auto fault = kindFault(status.st_mode)) {
        return fault;
    }
    const AutoClosingFileDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return descriptor.failed() ? Fault(systemError(errno)) : sizeFault(status.st_size);
}

/// Why the content doesn't pass. Verification doesn't tell; but without the limit of tables it may pass.
std::string contentFault(const ModelFileBuffer& buffer)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(static_cast<std::intptr_t>(buffer.getAddress()));
    flatbuffers::Verifier::Options options;
    options.max_tables = std::numeric_limits<flatbuffers::uoffset_t>::max();
    options.check_alignment = false;
    flatbuffers::Verifier verifier(bytes, static_cast<std::size_t>(buffer.getSize()), options);
    const SearchModel* model = GetSearchModel(bytes);
    if (!model->Verify(verifier)) {
        return "is no search model, or a damaged one";
    }
    return "has " + std::to_string(tableCount(*model)) + " tables, at most " + std::to_string(kMostTables) +
           " are allowed";
}

bool isMapped(const ModelFileBuffer& buffer)
{
    return buffer.stateIsValid() && buffer.getAddress() != -1;
}

} // namespace

ModelFile::ModelFile(const std::string& path)
{
    if (const auto fault = fileFault(path)) {
        throw BadInput(path + ": " + *fault);
    }
    _buffer = ModelFileBuffer::modelFileBufferInstanceWithPath(path);
    if (!isMapped(*_buffer)) {
        throw BadInput(path + ": can't be mapped into memory");
    }
    // The file may have become another one since it was looked at.
    if (const auto fault = sizeFault(static_cast<off_t>(_buffer->getSize()))) {
        throw BadInput(path + ": " + *fault);
    }
    _model = verifiedModel(*_buffer);
    if (!_model) {
        throw BadInput(path + ": " + contentFault(*_buffer));
    }
}

std::uint64_t tableCount(const SearchModel& model)
{
    const auto sizeOf = [](const auto* vector) {
        return vector ? std::uint64_t{vector->size()} : 0;
    };
    return 1 + sizeOf(model.comicPriors()) + sizeOf(model.entryInfoForWords());
}

} // namespace kovalin::cli
