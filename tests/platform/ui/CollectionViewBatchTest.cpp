#include "platform/ui/CollectionViewBatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

using namespace kovalin::platform;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class CollectionViewBatchTest : public testing::Test {
protected:
    bool map(qsizetype formerCount, qsizetype newCount) { return batch.map(formerCount, newCount, mapping, fault); }

    CollectionViewBatch batch;
    CollectionViewMapping mapping;
    QString fault;
};

TEST_F(CollectionViewBatchTest, LeavesEverythingInPlaceWithoutChanges)
{
    ASSERT_TRUE(map(3, 3));
    EXPECT_THAT(mapping.newItems, ElementsAre(0, 1, 2));
    EXPECT_THAT(mapping.formerItems, ElementsAre(0, 1, 2));
}

TEST_F(CollectionViewBatchTest, CountsWhatGoesBeforeAndWhatComesAfterAllChanges)
{
    batch.insert({0, 3});
    batch.remove({1});
    ASSERT_TRUE(map(3, 4));
    EXPECT_THAT(mapping.newItems, ElementsAre(1, -1, 2));
    EXPECT_THAT(mapping.formerItems, ElementsAre(-1, 0, 2, -1));
}

TEST_F(CollectionViewBatchTest, KeepsTheOrderOfWhatNeitherGoesNorMoves)
{
    batch.move(0, 3);
    ASSERT_TRUE(map(4, 4));
    EXPECT_THAT(mapping.newItems, ElementsAre(3, 0, 1, 2));
    EXPECT_THAT(mapping.formerItems, ElementsAre(1, 2, 3, 0));
}

TEST_F(CollectionViewBatchTest, RefusesPlacesOutsideOfTheList)
{
    for (const qsizetype item : {qsizetype(-1), qsizetype(3)}) {
        CollectionViewBatch deletes;
        deletes.remove({item});
        EXPECT_FALSE(deletes.map(3, 2, mapping, fault));
        EXPECT_THAT(fault.toStdString(), HasSubstr("deletes item"));
        CollectionViewBatch inserts;
        inserts.insert({item});
        EXPECT_FALSE(inserts.map(2, 3, mapping, fault));
        CollectionViewBatch moves;
        moves.move(item, 0);
        EXPECT_FALSE(moves.map(3, 3, mapping, fault));
        CollectionViewBatch movesTo;
        movesTo.move(0, item);
        EXPECT_FALSE(movesTo.map(3, 3, mapping, fault));
    }
}

TEST_F(CollectionViewBatchTest, RefusesTwoChangesOfOnePlace)
{
    CollectionViewBatch twice;
    twice.remove({1, 1});
    EXPECT_FALSE(twice.map(3, 1, mapping, fault));
    CollectionViewBatch movedAndDeleted;
    movedAndDeleted.move(1, 0);
    movedAndDeleted.remove({1});
    EXPECT_FALSE(movedAndDeleted.map(3, 2, mapping, fault));
    CollectionViewBatch twoToOnePlace;
    twoToOnePlace.move(0, 2);
    twoToOnePlace.move(1, 2);
    EXPECT_FALSE(twoToOnePlace.map(3, 3, mapping, fault));
    CollectionViewBatch insertedAndMovedTo;
    insertedAndMovedTo.insert({2});
    insertedAndMovedTo.move(0, 2);
    EXPECT_FALSE(insertedAndMovedTo.map(3, 4, mapping, fault));
}

TEST_F(CollectionViewBatchTest, RefusesWhatDoesntAddUp)
{
    batch.insert({0});
    EXPECT_FALSE(map(3, 3));
    EXPECT_EQ(fault, QStringLiteral("of 3 items makes 4, and the list has 3 now"));
    EXPECT_FALSE(map(3, 5));
    EXPECT_TRUE(map(3, 4));
}

TEST_F(CollectionViewBatchTest, LeadsFromAnyListToAnyOther)
{
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        // Two orders of some of thirty things; what is in both moves or stays.
        const auto draw = [&random] {
            std::vector<int> things(30);
            std::iota(things.begin(), things.end(), 0);
            std::shuffle(things.begin(), things.end(), random);
            things.resize(random() % 30);
            return things;
        };
        const auto former = draw();
        const auto next = draw();
        CollectionViewBatch changes;
        for (size_t item = 0; item < former.size(); ++item) {
            const auto place = std::find(next.begin(), next.end(), former[item]);
            if (place == next.end()) {
                changes.remove({static_cast<qsizetype>(item)});
            } else {
                changes.move(static_cast<qsizetype>(item), place - next.begin());
            }
        }
        for (size_t item = 0; item < next.size(); ++item) {
            if (std::find(former.begin(), former.end(), next[item]) == former.end()) {
                changes.insert({static_cast<qsizetype>(item)});
            }
        }
        ASSERT_TRUE(changes.map(std::ssize(former), std::ssize(next), mapping, fault)) << fault.toStdString();
        for (size_t item = 0; item < next.size(); ++item) {
            const qsizetype from = mapping.formerItems[item];
            if (from >= 0) {
                EXPECT_EQ(former[static_cast<size_t>(from)], next[item]);
                EXPECT_EQ(mapping.newItems[static_cast<size_t>(from)], static_cast<qsizetype>(item));
            }
        }
    }
}

} // namespace
