#include "learned_search/ComicIndex.h"

#include "learned_search/search_model_generated.h"
#include "support/ModelContent.h"

#include <gtest/gtest.h>

#include <limits>

using namespace vole::learned_search;
using namespace vole::learned_search::test;

namespace {

std::optional<ComicIndex> indexOf(const std::vector<std::int32_t>& comics)
{
    const Bytes file = ModelContent().list(comics).toFile();
    return ComicIndex::of(*GetSearchModel(file.data()));
}

TEST(ComicIndex, KnowsTheOrderOfTheModel)
{
    const std::vector<std::int32_t> comics{
        7, 0, -1, std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min(), 9};
    const auto index = indexOf(comics);
    ASSERT_TRUE(index);
    EXPECT_EQ(index->size(), comics.size());
    for (std::uint32_t position = 0; position < comics.size(); ++position) {
        EXPECT_EQ(index->positionOf(comics[position]), position);
    }
    EXPECT_EQ(index->positionOf(8), ComicIndex::kNone);
}

TEST(ComicIndex, IsEmptyForAModelWithoutComics)
{
    EXPECT_EQ(indexOf({}).value().positionOf(0), ComicIndex::kNone);
    ModelContent without;
    without.comics.reset();
    const Bytes file = without.toFile();
    EXPECT_EQ(ComicIndex::of(*GetSearchModel(file.data())).value().size(), 0U);
}

TEST(ComicIndex, IsNotMadeWhereAComicIsListedTwice)
{
    EXPECT_FALSE(indexOf({1, 2, 3, 2}));
    EXPECT_FALSE(indexOf({0, 0}));
}

TEST(ComicIndex, StaysWithinItsMemory)
{
    std::vector<std::int32_t> comics;
    for (std::int32_t comic = 0; comic < 43'689; ++comic) {
        comics.push_back(comic * 3);
    }
    ASSERT_TRUE(indexOf(comics));
    EXPECT_EQ(indexOf(comics)->positionOf(3 * 43'688), 43'688U);
    comics.push_back(-1);
    EXPECT_FALSE(indexOf(comics));
}

TEST(ComicIndex, IsNotMadeOfComicsThatWereChosenToCollide)
{
    // Ids that the index's multiplication sends to one place: multiples of its inverse, modulo the width of an id.
    std::vector<std::int32_t> comics;
    for (std::uint64_t id = 0; comics.size() < 2'000 && id <= std::numeric_limits<std::uint32_t>::max(); ++id) {
        if ((id * 0x9E37'79B9'7F4A'7C15U) >> 48 == 0) {
            comics.push_back(static_cast<std::int32_t>(static_cast<std::uint32_t>(id)));
        }
    }
    ASSERT_EQ(comics.size(), 2'000U);
    EXPECT_FALSE(indexOf(comics));
}

} // namespace
