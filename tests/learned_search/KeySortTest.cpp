#include "learned_search/KeySort.h"

#include "support/GeneratedModels.h"

#include <gtest/gtest.h>

using vole::learned_search::sortByKey;
using vole::learned_search::test::Random;

namespace {

struct Element {
    std::uint32_t key;
    std::size_t number;
};

TEST(KeySort, SortsListsOfAllLengths)
{
    Random random(1);
    for (const std::uint64_t greatest : {1ULL, 2ULL, 200ULL, 70'000ULL, 0x1'0000'0000ULL}) {
        for (std::size_t length = 0; length < 300; ++length) {
            std::vector<Element> list;
            std::vector<std::uint32_t> keys;
            for (std::size_t number = 0; number < length; ++number) {
                keys.push_back(static_cast<std::uint32_t>(random.below(greatest)));
                list.push_back({keys.back(), number});
            }
            sortByKey(std::span(list), [](const Element& element) { return element.key; });
            std::vector<bool> isThere(length);
            for (std::size_t place = 0; place < length; ++place) {
                ASSERT_EQ(list[place].key, keys[list[place].number]) << "an element lost its key";
                ASSERT_FALSE(isThere[list[place].number]) << "an element came out twice";
                isThere[list[place].number] = true;
                ASSERT_TRUE(place == 0 || list[place - 1].key <= list[place].key);
            }
        }
    }
}

} // namespace
