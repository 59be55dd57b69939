#include "learned_search/ModelFileBufferImpl.h"

#include "learned_search/AutoClosingFileDescriptor.h"
#include "utils/Log.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <memory>

namespace vole::learned_search {

namespace {

constexpr auto kTag = "[learned_search][ModelFileBuffer]";

} // namespace

ModelFileBuffer::~ModelFileBuffer() = default;

std::shared_ptr<ModelFileBuffer>
ModelFileBuffer::modelFileBufferInstanceWithPath(const std::optional<std::string>& path)
{
    return std::make_shared<ModelFileBufferImpl>(path);
}

ModelFileBufferImpl::ModelFileBufferImpl(const std::optional<std::string>& path)
{
    if (!path) {
        return;
    }
    const AutoClosingFileDescriptor descriptor(::open(path->c_str(), O_RDONLY | O_CLOEXEC));
    if (descriptor.failed()) {
        utils::logging::logError(kTag, "Unable to read model file");
        return;
    }
    const off_t size = ::lseek(descriptor(), 0, SEEK_END);
    if (size < 0) {
        utils::logging::logError(kTag, "Unable to determine model size");
        return;
    }
    // A mapping that failed is kept like one that succeeded: whoever reads must look at the address first.
    const auto length = static_cast<std::size_t>(size);
    void* const address = ::mmap(nullptr, length, PROT_READ, MAP_PRIVATE, descriptor(), 0);
    _mapping = Mapping{address, length};
}

ModelFileBufferImpl::~ModelFileBufferImpl()
{
    ModelFileBufferImpl::dispose();
}

std::int64_t ModelFileBufferImpl::getAddress() const
{
    return static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(_mapping->address));
}

std::int64_t ModelFileBufferImpl::getSize() const
{
    return static_cast<std::int64_t>(_mapping->size);
}

bool ModelFileBufferImpl::stateIsValid() const
{
    return _mapping.has_value();
}

void ModelFileBufferImpl::dispose()
{
    // The state stays as it is: readers that ask afterwards hear of a mapping that is gone, and the destructor unmaps the
    // same range once more.
    if (stateIsValid()) {
        ::munmap(_mapping->address, _mapping->size);
    }
}

void ModelFileBufferImpl::setStateToFailed()
{
    _mapping.reset();
}

} // namespace vole::learned_search
