#include "platform/ui/Button.h"
#include "support/CollectionViewTest.h"
#include "support/MirroredLayout.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>
#include <QtTest/QTest>

#include <gmock/gmock.h>

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Hears of the keys that nothing in it used.
class KeyView final : public View {
public:
    QString typed;
    QList<int> keys;

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        typed += event->text();
        keys.append(event->key());
    }
};

class CollectionViewKeysTest : public CollectionViewTest {
protected:
    CollectionViewKeysTest()
        : CollectionViewTest(std::make_shared<MirroredLayout>())
    {
        outer->setFrame({0, 0, side, side});
        root()->addSubview(outer);
    }
    ~CollectionViewKeysTest() override { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }

    void fillAndFocus(qsizetype count)
    {
        fill(count);
        outer->addSubview(view);
        grab();
        QTest::keyClick(&window(), Qt::Key_Tab);
        ASSERT_TRUE(view->hasActiveFocus());
    }
    void press(int key) { QTest::keyClick(&window(), static_cast<Qt::Key>(key)); }

    std::shared_ptr<KeyView> outer = makeView<KeyView>();
};

TEST_F(CollectionViewKeysTest, ComesToTheFirstItemOnScreenByTab)
{
    fillAndFocus(100);
    EXPECT_EQ(view->focusedItem(), 0);
    EXPECT_EQ(colorAt({1, 25}), QGuiApplication::palette().color(QPalette::Highlight));
    EXPECT_NE(colorAt({51, 25}), QGuiApplication::palette().color(QPalette::Highlight));
}

TEST_F(CollectionViewKeysTest, WalksByArrows)
{
    fillAndFocus(10);
    press(Qt::Key_Right);
    EXPECT_EQ(view->focusedItem(), 1);
    press(Qt::Key_Down);
    EXPECT_EQ(view->focusedItem(), 5);
    press(Qt::Key_Down);
    EXPECT_EQ(view->focusedItem(), 9);
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    EXPECT_EQ(view->focusedItem(), 7) << "into the row before";
    press(Qt::Key_Up);
    EXPECT_EQ(view->focusedItem(), 3);
    EXPECT_THAT(outer->keys, IsEmpty());
}

TEST_F(CollectionViewKeysTest, PassesOnArrowsThatLeadNowhere)
{
    fillAndFocus(10);
    press(Qt::Key_Up);
    press(Qt::Key_Left);
    EXPECT_THAT(outer->keys, ElementsAre(Qt::Key_Up, Qt::Key_Left));
    EXPECT_EQ(view->focusedItem(), 0);
}

TEST_F(CollectionViewKeysTest, WalksTheOtherWayWhereItIsMirrored)
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    fillAndFocus(10);
    press(Qt::Key_Left);
    EXPECT_EQ(view->focusedItem(), 1);
    press(Qt::Key_Down);
    EXPECT_EQ(view->focusedItem(), 5);
    press(Qt::Key_Right);
    EXPECT_EQ(view->focusedItem(), 4);
}

TEST_F(CollectionViewKeysTest, ScrollsSoThatItsItemIsSeen)
{
    fillAndFocus(100);
    for (int row = 0; row < 10; ++row) {
        press(Qt::Key_Down);
    }
    EXPECT_EQ(view->focusedItem(), 40);
    EXPECT_EQ(view->contentOffset().y(), 11 * 50 - 200);
    EXPECT_EQ(colorAt({1, 175}), QGuiApplication::palette().color(QPalette::Highlight));
}

TEST_F(CollectionViewKeysTest, SelectsByReturnEnterAndSpace)
{
    fillAndFocus(10);
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    press(Qt::Key_Enter);
    press(Qt::Key_Space);
    EXPECT_THAT(source->selected, ElementsAre(1, 1, 1));
}

TEST_F(CollectionViewKeysTest, PassesOnWhatIsTyped)
{
    fillAndFocus(10);
    for (const char key : {'h', 'u', 'g'}) {
        QTest::keyClick(&window(), key);
    }
    EXPECT_EQ(outer->typed, QStringLiteral("hug"));
}

TEST_F(CollectionViewKeysTest, ShowsNoRingUntilTheKeyboardIsUsed)
{
    fill(10);
    const auto button = makeView<Button>();
    root()->addSubview(button);
    view->forceActiveFocus(Qt::OtherFocusReason);
    EXPECT_NE(colorAt({1, 25}), QGuiApplication::palette().color(QPalette::Highlight));
    press(Qt::Key_Down);
    EXPECT_EQ(view->focusedItem(), 0) << "the first arrow shows where it is";
    EXPECT_EQ(colorAt({1, 25}), QGuiApplication::palette().color(QPalette::Highlight));
    press(Qt::Key_Tab);
    EXPECT_NE(colorAt({1, 25}), QGuiApplication::palette().color(QPalette::Highlight)) << "it has gone on";
}

TEST_F(CollectionViewKeysTest, FollowsItsItemThroughChanges)
{
    fillAndFocus(10);
    press(Qt::Key_Down);
    ASSERT_EQ(view->focusedItem(), 4);
    view->performBatchUpdates([&] {
        source->numbers.move(4, 1);
        view->moveItemAtIndexPath(4, 1);
    });
    EXPECT_EQ(view->focusedItem(), 1);
    view->performBatchUpdates([&] {
        source->numbers = {0};
        view->deleteItemsAtIndexPaths(range(1, 10));
    });
    EXPECT_EQ(view->focusedItem(), 0);
    view->performBatchUpdates([&] {
        source->numbers.clear();
        view->deleteItemsAtIndexPaths({0});
    });
    EXPECT_EQ(view->focusedItem(), -1);
    press(Qt::Key_Return);
    press(Qt::Key_Down);
    EXPECT_THAT(source->selected, IsEmpty());
}

TEST_F(CollectionViewKeysTest, WalksInAStrip)
{
    view->collectionViewLayout()->setScrollDirection(ScrollDirection::Horizontal);
    view->setFrame({0, 0, 200, 110});
    fillAndFocus(50); // columns of two
    press(Qt::Key_Down);
    EXPECT_EQ(view->focusedItem(), 1);
    press(Qt::Key_Down);
    EXPECT_EQ(view->focusedItem(), 1) << "it stays in its column";
    press(Qt::Key_Right);
    EXPECT_EQ(view->focusedItem(), 3);
    press(Qt::Key_Up);
    EXPECT_EQ(view->focusedItem(), 2);
    press(Qt::Key_Left);
    EXPECT_EQ(view->focusedItem(), 0);
}

} // namespace
