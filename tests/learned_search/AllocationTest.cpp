// A prediction allocates a handful of lists, however many comics it goes over: counted by an allocator of this program's own.
#include "learned_search/LearnedSearchClassifier.h"
#include "support/GeneratedModels.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t allocations = 0;

void* allocate(std::size_t size)
{
    ++allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size)
{
    return allocate(size);
}

void* operator new[](std::size_t size)
{
    return allocate(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

using namespace vole::learned_search;
using namespace vole::learned_search::test;

namespace {

std::size_t allocationsOf(std::size_t rows, const std::string& query)
{
    ModelContent content;
    std::vector<ModelContent::Row> itsRows;
    Random random(rows);
    for (std::size_t comic = 0; comic < 5'000; ++comic) {
        content.list({static_cast<std::int32_t>(comic)});
        if (comic < rows) {
            itsRows.push_back({static_cast<std::int32_t>(comic), static_cast<float>(random.share()) + 0.01F});
        }
    }
    content.add("one", itsRows).add("two", itsRows);
    const auto classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(bufferOf(content));
    EXPECT_EQ(classifier->predict(query, 1'000).size(), std::min<std::size_t>(rows, 1'000)); // and makes the index
    const std::size_t before = allocations;
    const auto comics = classifier->predict(query, 1'000);
    return allocations - before;
}

TEST(PredictionAllocations, DontGrowWithTheCandidates)
{
    for (const std::string query : {"one", "one two"}) {
        const std::size_t few = allocationsOf(100, query);
        EXPECT_GT(few, 0U);
        EXPECT_LT(few, 20U);
        // The larger list meets equal scores by chance, and is put into order once more.
        EXPECT_LE(allocationsOf(5'000, query), few + 3) << query;
    }
}

} // namespace
