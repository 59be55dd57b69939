#include "platform/ui/Animation.h"
#include "support/CollectionViewTest.h"
#include "support/LogLines.h"

#include <gmock/gmock.h>

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Comes in small and pale, and goes so.
class FadingLayout final : public CollectionViewFlowLayout {
public:
    [[nodiscard]] CollectionViewLayoutAttributes
    initialLayoutAttributesForAppearingItemAtIndexPath(qsizetype item) const override
    {
        return faded(CollectionViewFlowLayout::initialLayoutAttributesForAppearingItemAtIndexPath(item));
    }
    [[nodiscard]] CollectionViewLayoutAttributes
    finalLayoutAttributesForDisappearingItemAtIndexPath(qsizetype item) const override
    {
        return faded(CollectionViewFlowLayout::finalLayoutAttributesForDisappearingItemAtIndexPath(item));
    }

private:
    static CollectionViewLayoutAttributes faded(CollectionViewLayoutAttributes attributes)
    {
        attributes.alpha = 0;
        attributes.transform = ViewTransform::scale(0.5, 0.5);
        return attributes;
    }
};

class CollectionViewUpdatesTest : public CollectionViewTest {
protected:
    CollectionViewUpdatesTest()
        : CollectionViewTest(std::make_shared<FadingLayout>())
    {
    }

    void finish()
    {
        driver.step(0ms);
        driver.step(2s);
        drainMainQueue();
        grab();
    }
    void expectNumbers()
    {
        for (const qsizetype item : view->indexPathsForVisibleItems()) {
            ASSERT_TRUE(cell(item)) << item;
            EXPECT_EQ(cell(item)->number, source->numbers.at(item)) << item;
            EXPECT_EQ(cell(item)->frame(), view->frameOfItem(item)) << item;
            EXPECT_EQ(cell(item)->alpha(), 1) << item;
            EXPECT_TRUE(cell(item)->transform().isIdentity()) << item;
        }
    }
};

TEST_F(CollectionViewUpdatesTest, MovesAnItemToItsNewPlaceOverTime)
{
    fill(8);
    const auto first = cell(0);
    view->performBatchUpdates([&] {
        source->numbers.move(0, 5);
        view->moveItemAtIndexPath(0, 5);
    });
    EXPECT_EQ(view->indexPathForCell(*first), 5) << "at once";
    EXPECT_EQ(first->frame(), QRectF(50, 50, 50, 50));
    EXPECT_EQ(first->position(), QPointF(0, 0)) << "on screen it has just begun";
    driver.step(0ms);
    driver.step(150ms);
    EXPECT_GT(first->x(), 0);
    EXPECT_LT(first->x(), 50);
    finish();
    EXPECT_EQ(first->position(), QPointF(50, 50));
    expectNumbers();
    EXPECT_EQ(made, 8);
}

TEST_F(CollectionViewUpdatesTest, FadesInWhatComesAndOutWhatGoes)
{
    fill(4);
    const auto gone = cell(1);
    view->performBatchUpdates([&] {
        source->numbers = {0, 2, 3, 77};
        view->deleteItemsAtIndexPaths({1});
        view->insertItemsAtIndexPaths({3});
    });
    const auto come = cell(3);
    EXPECT_EQ(come->number, 77);
    EXPECT_EQ(come->alpha(), 1);
    EXPECT_EQ(come->opacity(), 0) << "on screen it has just begun";
    EXPECT_EQ(gone->alpha(), 0);
    EXPECT_EQ(gone->opacity(), 1);
    EXPECT_EQ(gone->frame(), QRectF(50, 0, 50, 50)) << "where it was";
    EXPECT_EQ(view->indexPathForCell(*gone), -1);
    EXPECT_EQ(view->indexPathsForVisibleItems(), range(0, 4));
    driver.step(0ms);
    driver.step(150ms);
    EXPECT_GT(come->opacity(), 0);
    EXPECT_LT(gone->opacity(), 1);
    EXPECT_TRUE(gone->isVisible());
    finish();
    EXPECT_FALSE(gone->isVisible());
    EXPECT_EQ(come->opacity(), 1);
    expectNumbers();
}

TEST_F(CollectionViewUpdatesTest, DoesntTakeTapsForWhatIsOnItsWayOut)
{
    fill(5);
    view->performBatchUpdates([&] {
        source->numbers.removeLast();
        view->deleteItemsAtIndexPaths({4});
    });
    driver.step(0ms);
    driver.step(10ms);
    tap({25, 75});
    EXPECT_THAT(source->selected, IsEmpty());
}

TEST_F(CollectionViewUpdatesTest, UsesACellAgainOnceItHasLeft)
{
    fill(4);
    for (int round = 0; round < 20; ++round) {
        view->performBatchUpdates([&] {
            source->numbers = QList<int>(4, round);
            view->deleteItemsAtIndexPaths(range(0, 4));
            view->insertItemsAtIndexPaths(range(0, 4));
        });
        finish();
        expectNumbers();
    }
    EXPECT_EQ(made, 8);
}

TEST_F(CollectionViewUpdatesTest, GoesWithTheAnimationAroundIt)
{
    fill(8);
    const auto first = cell(0);
    animate(1s, 0s, [&] {
        view->performBatchUpdates([&] {
            source->numbers.move(0, 3);
            view->moveItemAtIndexPath(0, 3);
        });
    });
    driver.step(0ms);
    driver.step(500ms);
    EXPECT_NEAR(first->x(), 75, 0.5);
    driver.step(500ms);
    EXPECT_EQ(first->x(), 150);
}

TEST_F(CollectionViewUpdatesTest, JumpsWhereNothingIsToBeAnimated)
{
    fill(8);
    withoutAnimation([&] {
        view->performBatchUpdates([&] {
            source->numbers.move(0, 3);
            view->moveItemAtIndexPath(0, 3);
        });
    });
    EXPECT_EQ(cell(3)->x(), 150);
}

TEST_F(CollectionViewUpdatesTest, CompletesOnceWhenEverythingHasArrived)
{
    fill(4);
    int completions = 0;
    view->performBatchUpdates(
        [&] {
            source->numbers.removeFirst();
            view->deleteItemsAtIndexPaths({0});
        },
        [&] { ++completions; });
    driver.step(0ms);
    driver.step(100ms);
    drainMainQueue();
    EXPECT_EQ(completions, 0);
    finish();
    EXPECT_EQ(completions, 1);
}

TEST_F(CollectionViewUpdatesTest, CompletesInALaterTurnWhereNothingMoves)
{
    fill(4);
    int completions = 0;
    view->performBatchUpdates({[] {
                              }},
                              [&] { ++completions; });
    EXPECT_EQ(completions, 0);
    drainMainQueue();
    EXPECT_EQ(completions, 1);
}

TEST_F(CollectionViewUpdatesTest, BeginsTheNextChangeFromWhatTheLastOneLeft)
{
    fill(8);
    const auto first = cell(0);
    view->performBatchUpdates([&] {
        source->numbers.move(0, 3);
        view->moveItemAtIndexPath(0, 3);
    });
    driver.step(0ms);
    driver.step(150ms);
    const double midway = first->x();
    view->performBatchUpdates([&] {
        source->numbers.move(3, 1);
        view->moveItemAtIndexPath(3, 1);
    });
    EXPECT_EQ(view->indexPathForCell(*first), 1);
    EXPECT_EQ(first->x(), midway);
    finish();
    EXPECT_EQ(first->x(), 50);
    expectNumbers();
}

TEST_F(CollectionViewUpdatesTest, BringsWhatComesFromOffScreenFromItsPlace)
{
    fill(100);
    view->performBatchUpdates([&] {
        source->numbers.move(90, 0);
        view->moveItemAtIndexPath(90, 0);
    });
    EXPECT_EQ(cell(0)->number, 90);
    EXPECT_EQ(cell(0)->position(), QPointF(100, 22 * 50)) << "on screen it has just begun";
    finish();
    expectNumbers();
}

TEST_F(CollectionViewUpdatesTest, TakesWhatGoesOffScreenThere)
{
    fill(100);
    const auto first = cell(0);
    view->performBatchUpdates([&] {
        source->numbers.move(0, 90);
        view->moveItemAtIndexPath(0, 90);
    });
    EXPECT_EQ(first->frame(), QRectF(100, 22 * 50, 50, 50));
    EXPECT_TRUE(first->isVisible());
    finish();
    EXPECT_FALSE(first->isVisible());
    expectNumbers();
}

TEST_F(CollectionViewUpdatesTest, ChangesWhatIsOffScreenWithoutAnyAnimation)
{
    fill(100);
    view->performBatchUpdates([&] {
        source->numbers[18] = 500; // in the row below the screen
        view->deleteItemsAtIndexPaths({18});
        view->insertItemsAtIndexPaths({18});
    });
    EXPECT_EQ(cell(18)->number, 500);
    EXPECT_EQ(cell(18)->opacity(), 1);
    EXPECT_EQ(allCells(), 20);
}

TEST_F(CollectionViewUpdatesTest, TakesASingleChangeForABatchOfOne)
{
    fill(4);
    source->numbers.append(4);
    view->insertItemsAtIndexPaths({4});
    finish();
    EXPECT_EQ(view->numberOfItems(), 5);
    expectNumbers();
}

TEST_F(CollectionViewUpdatesTest, JoinsABatchWithinABatch)
{
    fill(4);
    int completions = 0;
    view->performBatchUpdates(
        [&] {
            source->numbers = {1, 2, 3, 9};
            view->deleteItemsAtIndexPaths({0});
            view->performBatchUpdates([&] { view->insertItemsAtIndexPaths({3}); }, [&] { ++completions; });
        },
        [&] { ++completions; });
    finish();
    EXPECT_EQ(completions, 2);
    expectNumbers();
}

TEST_F(CollectionViewUpdatesTest, ReloadsItemsOfABatchAtTheirNewPlaces)
{
    fill(4);
    view->performBatchUpdates([&] {
        source->numbers = {1, 50, 3};
        view->deleteItemsAtIndexPaths({0});
        view->reloadItemsAtIndexPaths({2});
    });
    EXPECT_EQ(cell(1)->number, 50);
    finish();
    expectNumbers();
}

TEST_F(CollectionViewUpdatesTest, LoadsAllAnewWhereABatchDoesntAddUp)
{
    fill(4);
    const LogLines lines;
    int completions = 0;
    view->performBatchUpdates(
        [&] {
            source->numbers = {5, 6, 7};
            view->insertItemsAtIndexPaths({0});
        },
        [&] { ++completions; });
    EXPECT_EQ(LogLines::count(QStringLiteral("of 4 items makes 5, and the list has 3 now")), 1);
    EXPECT_EQ(view->numberOfItems(), 3);
    expectNumbers();
    drainMainQueue();
    EXPECT_EQ(completions, 1);
    view->performBatchUpdates([&] { view->moveItemAtIndexPath(0, 17); });
    view->performBatchUpdates([&] { view->deleteItemsAtIndexPaths({-5, 2, 2}); });
    grab();
    expectNumbers();
}

TEST_F(CollectionViewUpdatesTest, EmptiesAndFillsAgain)
{
    fill(100);
    view->setContentOffset({0, 1000}, false);
    view->performBatchUpdates([&] {
        view->deleteItemsAtIndexPaths(range(0, 100));
        source->numbers.clear();
    });
    finish();
    EXPECT_THAT(itemsWithCells(), IsEmpty());
    EXPECT_EQ(view->contentOffset(), QPointF(0, 0));
    view->performBatchUpdates([&] {
        source->numbers = {3, 2, 1};
        view->insertItemsAtIndexPaths(range(0, 3));
    });
    finish();
    EXPECT_EQ(itemsWithCells(), range(0, 3));
    expectNumbers();
}

TEST_F(CollectionViewUpdatesTest, MayGoWhileAChangeIsAnimated)
{
    fill(16);
    int completions = 0;
    view->performBatchUpdates(
        [&] {
            view->deleteItemsAtIndexPaths(range(0, 16));
            source->numbers.clear();
        },
        [&] { ++completions; });
    driver.step(0ms);
    driver.step(50ms);
    view->removeFromSuperview();
    view.reset();
    drainMainQueue();
    driver.step(1s);
    drainMainQueue();
    EXPECT_EQ(completions, 1);
}

TEST_F(CollectionViewUpdatesTest, EndsWithTheListWhateverWasChangedAndScrolledMeanwhile)
{
    fill(60);
    quint32 random = 7;
    const auto draw = [&random](qsizetype end) {
        random = random * 1664525U + 1013904223U;
        return static_cast<qsizetype>(random >> 8) % std::max<qsizetype>(end, 1);
    };
    for (int round = 0; round < 200; ++round) {
        view->performBatchUpdates([&] {
            const qsizetype deleted = draw(source->numbers.size());
            const qsizetype inserted = draw(source->numbers.size());
            source->numbers.removeAt(deleted);
            source->numbers.insert(inserted, 1000 + round);
            view->deleteItemsAtIndexPaths({deleted});
            view->insertItemsAtIndexPaths({inserted});
        });
        driver.step(0ms);
        driver.step(std::chrono::milliseconds(draw(200)));
        view->setContentOffset({0, static_cast<double>(draw(700))}, false);
        if (round % 3 == 0) {
            grab();
            for (const qsizetype item : view->indexPathsForVisibleItems()) {
                ASSERT_TRUE(cell(item));
                ASSERT_EQ(cell(item)->number, source->numbers.at(item));
            }
        }
    }
    finish();
    expectNumbers();
    EXPECT_LT(made, 60);
}

} // namespace
