// How often a buffer unmaps: what the kernel is asked is told by a munmap of this program's own.
#ifdef __linux__

#include "learned_search/ModelFileBuffer.h"
#include "support/ModelContent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>

using namespace vole::learned_search;
using namespace vole::learned_search::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct UnmapCall {
    void* address;
    std::size_t size;

    friend bool operator==(const UnmapCall&, const UnmapCall&) = default;
};

/// Keeps the calls of munmap on this thread for as long as it lives, and has them done only then, so that nothing else can
/// take the place of a mapping between two of them.
class UnmapRecorder final {
public:
    UnmapRecorder() { current = this; }
    ~UnmapRecorder()
    {
        current = nullptr;
        const auto last = std::unique(_calls.begin(), _calls.end());
        std::for_each(_calls.begin(), last, [](const UnmapCall& call) { ::munmap(call.address, call.size); });
    }
    UnmapRecorder(const UnmapRecorder&) = delete;
    UnmapRecorder& operator=(const UnmapRecorder&) = delete;

    [[nodiscard]] const std::vector<UnmapCall>& calls() const { return _calls; }
    void add(const UnmapCall& call) { _calls.push_back(call); }

    static inline thread_local UnmapRecorder* current = nullptr;

private:
    std::vector<UnmapCall> _calls;
};

UnmapCall wholeOf(const ModelFileBuffer& buffer)
{
    return {reinterpret_cast<void*>(static_cast<std::intptr_t>(buffer.getAddress())),
            static_cast<std::size_t>(buffer.getSize())};
}

Bytes someBytes()
{
    return {1, 2, 3, 4, 5};
}

std::shared_ptr<ModelFileBuffer> open(const std::string& path)
{
    return ModelFileBuffer::modelFileBufferInstanceWithPath(path);
}

} // namespace

// Stands in for the C library's one in this program.
extern "C" int munmap(void* address, std::size_t size) noexcept
{
    if (UnmapRecorder::current) {
        UnmapRecorder::current->add({address, size});
        return 0;
    }
    return static_cast<int>(::syscall(SYS_munmap, address, size));
}

TEST(ModelFileBufferDispose, UnmapsAtEachCallAndStaysValid)
{
    const TemporaryFile file(someBytes());
    const UnmapRecorder unmapped;
    auto buffer = open(file.path());
    const UnmapCall call{reinterpret_cast<void*>(static_cast<std::intptr_t>(buffer->getAddress())), someBytes().size()};

    buffer->dispose();
    EXPECT_TRUE(buffer->stateIsValid());
    EXPECT_THAT(unmapped.calls(), ElementsAre(call));

    buffer->dispose();
    EXPECT_TRUE(buffer->stateIsValid());
    EXPECT_EQ(wholeOf(*buffer), call);
    EXPECT_THAT(unmapped.calls(), ElementsAre(call, call));

    buffer.reset();
    EXPECT_THAT(unmapped.calls(), ElementsAre(call, call, call));
}

TEST(ModelFileBufferDispose, IsRepeatedByTheDestructor)
{
    const TemporaryFile file(someBytes());
    const UnmapRecorder unmapped;
    auto buffer = open(file.path());
    const UnmapCall call{reinterpret_cast<void*>(static_cast<std::intptr_t>(buffer->getAddress())), someBytes().size()};

    buffer->dispose();
    buffer.reset();

    EXPECT_THAT(unmapped.calls(), ElementsAre(call, call));
}

TEST(ModelFileBufferDispose, UnmapsWhatFailedToBeMappedToo)
{
    const TemporaryFile empty({});
    const UnmapRecorder unmapped;

    open(empty.path())->dispose();

    EXPECT_THAT(unmapped.calls(), ElementsAre(UnmapCall{MAP_FAILED, 0}, UnmapCall{MAP_FAILED, 0}));
}

TEST(ModelFileBufferDispose, DoesNothingInAnInvalidState)
{
    const UnmapRecorder unmapped;
    const auto buffer = ModelFileBuffer::modelFileBufferInstanceWithPath(std::nullopt);

    buffer->dispose();
    open("/nonexistent/model")->dispose();

    EXPECT_FALSE(buffer->stateIsValid());
    EXPECT_THAT(unmapped.calls(), IsEmpty());
}

#endif
