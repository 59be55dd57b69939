// Keys that point at rows which aren't there: asking for one stops the program, and nothing else does.
#include "learned_search/LearnedSearchClassifier.h"
#include "support/CheckedModel.h"
#include "support/SmallModel.h"

#include <gtest/gtest.h>

#include <limits>

using namespace vole::learned_search;
using namespace vole::learned_search::test;

namespace {

constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
constexpr auto stop = "i < size\\(\\)";

Bytes withSlice(std::int32_t start, std::int32_t count)
{
    ModelContent model = smallModel(); // of six rows
    model.keys->front().start = start;
    model.keys->front().count = count;
    return model.toFile();
}

std::vector<std::int32_t> predict(const Bytes& file, const std::string& query)
{
    return LearnedSearchClassifier::learnedSearchClassifierWithBuffer(bufferOf(file))->predict(query, 10);
}

TEST(SliceOutOfRowsDeathTest, StopsTheProgramWhenItsKeyIsAskedFor)
{
    struct Slice {
        std::int32_t start;
        std::int32_t count;
    };
    for (const auto [start, count] :
         {Slice{0, 7}, Slice{6, 1}, Slice{5, 2}, Slice{greatest, 1}, Slice{greatest, greatest}, Slice{0, greatest}}) {
        const Bytes file = withSlice(start, count);
        ASSERT_TRUE(inspectModel(file).slicesLeaveRows);
        EXPECT_DEATH((void)predict(file, "good"), stop) << start << ", " << count;
    }
}

TEST(SliceOutOfRowsDeathTest, StopsTheProgramInARealFileToo)
{
    const TemporaryFile file(withSlice(6, 1));
    const auto predictFromFile = [&file] {
        return LearnedSearchClassifier::learnedSearchClassifierWithBuffer(
                   ModelFileBuffer::modelFileBufferInstanceWithPath(file.path()))
            ->predict("good", 10);
    };
    EXPECT_DEATH((void)predictFromFile(), stop);
}

TEST(SliceOutOfRowsDeathTest, StopsTheProgramWhereDamageMadeItSo)
{
    Bytes file = smallModel().toFile();
    const FilePlaces places(file);
    const std::vector<std::string> queries{"good", "goodness", "good morning", "morning"};
    for (std::size_t key = 0; key < queries.size(); ++key) {
        const std::size_t count = places.field(places.key(key), 2);
        for (const std::size_t place : {count, count + 3}) {
            file[place] ^= 0x40U;
            ASSERT_TRUE(inspectModel(file).slicesLeaveRows);
            EXPECT_DEATH((void)predict(file, queries[key]), stop) << place;
            file[place] ^= 0x40U;
        }
    }
}

TEST(SliceOutOfRows, StopsNothingElse)
{
    const Bytes file = withSlice(6, 1);
    EXPECT_TRUE(isTreatedRightly(file, smallModelQuestions())); // which leaves out what would stop
    const auto classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(bufferOf(file));
    EXPECT_EQ(classifier->predict("goodness", 10), std::vector<std::int32_t>{11});
    EXPECT_EQ(classifier->predict("unknown", 10), std::vector<std::int32_t>());
    EXPECT_EQ(classifier->getAutocompleteSuggestions("good"), (std::vector<std::string>{"good morning", "good"}));
}

TEST(SliceOutOfRows, IsNoneWhereThereIsNothingToRead)
{
    struct Slice {
        std::int32_t start;
        std::int32_t count;
    };
    for (const auto [start, count] :
         {Slice{greatest, 0}, Slice{6, 0}, Slice{greatest, -1}, Slice{0, least}, Slice{greatest, least},
          Slice{-1, greatest}, Slice{least, greatest}, Slice{least, least}, Slice{-1, 1}, Slice{0, 6}, Slice{5, 1}}) {
        const Bytes file = withSlice(start, count);
        EXPECT_TRUE(inspectModel(file).canBePredictedWith());
        EXPECT_TRUE(isTreatedRightly(file, {{"good"}, {"good morning"}})) << start << ", " << count;
    }
}

} // namespace
