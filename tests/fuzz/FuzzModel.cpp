// The fuzzer of all that reads a model file: opening it, verifying it, predicting, suggesting. A finding is whatever the
// sanitizers report, and whatever isn't as the rules of the format and the plain classifier have it. That the program stops
// at a key which points behind the model's rows is intended; such a model isn't asked for predictions.
#include "fuzz/FuzzInput.h"
#include "learned_search/ModelFileBuffer.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

using namespace vole::learned_search;
using namespace vole::learned_search::test;

namespace {

/// More only takes time.
constexpr std::size_t mostModelBytes = 16 * 1024;

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "FuzzModel: %s\n", what);
    std::abort();
}

/// The model as a file that is mapped. Held in memory, so that nothing is left behind when the program dies.
std::shared_ptr<ModelFileBuffer> mappedFileOf(const Bytes& model)
{
    const int descriptor = ::memfd_create("kovalin-model", MFD_CLOEXEC);
    if (descriptor < 0 || ::write(descriptor, model.data(), model.size()) != static_cast<ssize_t>(model.size())) {
        fail("can't write the model's file");
    }
    auto buffer = ModelFileBuffer::modelFileBufferInstanceWithPath("/proc/self/fd/" + std::to_string(descriptor));
    ::close(descriptor);
    if (!buffer->stateIsValid()) {
        fail("can't open the model's file");
    }
    return buffer;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const FuzzInput input = FuzzInput::fromBytes(data, size);
    if (input.model.size() > mostModelBytes) {
        return 0;
    }
    const ModelInspection inspection = inspectModel(input.model);
    // In memory a read past the end is seen; behind the end of a mapped file there is the rest of its page.
    if (const auto fault = firstFault(bufferOf(input.model), inspection, input.questions)) {
        fail(("in memory: " + *fault).c_str());
    }
    if (const auto fault = firstFault(mappedFileOf(input.model), inspection, input.questions)) {
        fail(("mapped: " + *fault).c_str());
    }
    return 0;
}
