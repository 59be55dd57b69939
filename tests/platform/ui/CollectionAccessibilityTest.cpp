#include "platform/ui/CollectionAccessibility.h"

#include "platform/ui/CollectionView.h"
#include "platform/ui/Label.h"
#include "support/QtPrinting.h"
#include "support/ViewTest.h"

#include <QtCore/QPointer>
#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <numeric>

using namespace kovalin::platform;
using kovalin::test::drainMainQueue;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Items of 50 × 50 points that are called by their numbers.
class NumberedItems : public CollectionViewDataSource, public CollectionViewDelegate {
public:
    qsizetype collectionViewNumberOfItemsInSection(CollectionView& /*collectionView*/) override
    {
        return static_cast<qsizetype>(numbers.size());
    }

    std::shared_ptr<CollectionViewCell> collectionViewCellForItemAtIndexPath(CollectionView& collectionView,
                                                                             qsizetype item) override
    {
        return collectionView.dequeueReusableCell(QStringLiteral("cell"), item);
    }

    QString collectionViewAccessibilityLabelForItemAtIndexPath(CollectionView& /*collectionView*/,
                                                               qsizetype item) override
    {
        ++names;
        return QStringLiteral("sticker %1").arg(numbers.at(static_cast<size_t>(item)));
    }

    QSizeF collectionViewLayoutSizeForItemAtIndexPath(CollectionView& /*collectionView*/, qsizetype /*item*/) override
    {
        return {50, 50};
    }

    void collectionViewDidSelectItemAtIndexPath(CollectionView& /*collectionView*/, qsizetype item) override
    {
        selected.push_back(item);
    }

    std::vector<int> numbers;
    std::vector<qsizetype> selected;
    int names = 0;
};

struct ToldEvent {
    int type;
    const QAccessibleInterface* of;

    friend bool operator==(const ToldEvent&, const ToldEvent&) = default;
};

/// A collection view of 1 000 items, four in a row, at (0, 50) below a label.
class CollectionAccessibilityTest : public kovalin::test::ViewTest {
protected:
    static constexpr int count = 1000;

    CollectionAccessibilityTest()
    {
        items->numbers.resize(count);
        std::iota(items->numbers.begin(), items->numbers.end(), 0);

        const auto flow = std::make_shared<CollectionViewFlowLayout>();
        flow->setMinimumLineSpacing(0);
        flow->setMinimumInteritemSpacing(0);
        collection = makeView<CollectionView>(flow);
        collection->registerCell(QStringLiteral("cell"), [] {
            const auto cell = makeView<CollectionViewCell>();
            const auto label = makeView<Label>();
            label->setText(QStringLiteral("inside of a cell"));
            cell->addSubview(label);
            return cell;
        });
        collection->setFrame({0, 50, 200, 150});
        collection->setAccessibilityRole(QAccessible::List);
        collection->setAccessibilityLabel(QStringLiteral("Stickers"));
        collection->setDataSource(items);
        collection->setDelegate(items);
        above->setText(QStringLiteral("above"));
        above->setFrame({0, 0, 200, 50});
        root()->addSubview(above);
        root()->addSubview(collection);
        window().setPosition(30, 40);
        grab();
    }

    ~CollectionAccessibilityTest() override { CollectionAccessibility::setListener({}); }

    /// As found from the window.
    QAccessibleInterface* list()
    {
        QAccessibleInterface* const top = QAccessible::queryAccessibleInterface(&window());
        for (int index = 0; top && index < top->childCount(); ++index) {
            if (top->child(index)->role() == QAccessible::List) {
                return top->child(index);
            }
        }
        return nullptr;
    }

    void listen()
    {
        CollectionAccessibility::setListener([this](QAccessibleEvent& event) {
            told.push_back({event.type(), event.accessibleInterface()});
        });
    }

    void change(const std::vector<int>& numbers)
    {
        items->numbers = numbers;
        collection->reloadData();
        grab();
    }

    static QString nameOf(const QAccessibleInterface* seen) { return seen->text(QAccessible::Name); }

    std::shared_ptr<NumberedItems> items = std::make_shared<NumberedItems>();
    std::shared_ptr<Label> above = makeView<Label>();
    std::shared_ptr<CollectionView> collection;
    std::vector<ToldEvent> told;
};

TEST_F(CollectionAccessibilityTest, aWindowHasAListOfAllItems)
{
    QAccessibleInterface* const seen = list();
    ASSERT_NE(seen, nullptr);
    EXPECT_TRUE(seen->isValid());
    EXPECT_EQ(seen->object(), collection.get());
    EXPECT_EQ(seen->window(), &window());
    EXPECT_EQ(nameOf(seen), QStringLiteral("Stickers"));
    EXPECT_EQ(seen->childCount(), count);
    QAccessibleInterface* const top = QAccessible::queryAccessibleInterface(&window());
    EXPECT_EQ(top->childCount(), 2) << "nothing of the cells";
    EXPECT_EQ(seen->parent(), top);
    EXPECT_EQ(top->indexOfChild(seen), 1);
    EXPECT_EQ(seen->child(-1), nullptr);
    EXPECT_EQ(seen->child(count), nullptr);
    EXPECT_TRUE(seen->state().focusable);
    EXPECT_FALSE(seen->state().invisible);
}

TEST_F(CollectionAccessibilityTest, eachItemHasItsNameAndPlaceWhetherItHasACellOrNot)
{
    QAccessibleInterface* const seen = list();
    for (const int index : {0, 5, 500, 999}) {
        QAccessibleInterface* const item = seen->child(index);
        ASSERT_NE(item, nullptr);
        EXPECT_TRUE(item->isValid());
        EXPECT_EQ(item, seen->child(index));
        EXPECT_EQ(item->role(), QAccessible::ListItem);
        EXPECT_EQ(nameOf(item), QStringLiteral("sticker %1").arg(index));
        EXPECT_EQ(item->parent(), seen);
        EXPECT_EQ(seen->indexOfChild(item), index);
        EXPECT_EQ(item->childCount(), 0);
        EXPECT_EQ(item->object(), nullptr);
        EXPECT_EQ(item->window(), &window());
        EXPECT_TRUE(item->state().focusable);
        EXPECT_TRUE(item->state().selectable);
        EXPECT_FALSE(item->state().invisible);
        EXPECT_EQ(item->state().offscreen, index >= 12) << index;
    }
    EXPECT_EQ(seen->indexOfChild(seen), -1);
    EXPECT_EQ(seen->indexOfChild(nullptr), -1);
}

TEST_F(CollectionAccessibilityTest, rectanglesAreThoseOnScreenAndFollowTheScroll)
{
    QAccessibleInterface* const seen = list();
    const QPoint origin = window().mapToGlobal(QPoint(0, 0));
    EXPECT_EQ(seen->rect(), QRect(origin + QPoint(0, 50), QSize(200, 150)));
    EXPECT_EQ(seen->child(5)->rect(), QRect(origin + QPoint(50, 100), QSize(50, 50)));
    EXPECT_EQ(seen->child(999)->rect(), QRect(origin + QPoint(150, 50 + 249 * 50), QSize(50, 50)));
    EXPECT_EQ(seen->childAt(origin.x() + 60, origin.y() + 110), seen->child(5));

    collection->setContentOffset({0, 1000}, false);
    EXPECT_EQ(seen->child(80)->rect(), QRect(origin + QPoint(0, 50), QSize(50, 50)));
    EXPECT_TRUE(seen->child(5)->state().offscreen);
    EXPECT_FALSE(seen->child(80)->state().offscreen);
    EXPECT_EQ(seen->childAt(origin.x() + 60, origin.y() + 110), seen->child(85));
    EXPECT_EQ(seen->childAt(origin.x() + 60, origin.y() + 10), nullptr);
    QAccessibleInterface* const top = QAccessible::queryAccessibleInterface(&window());
    QAccessibleInterface* found = top->childAt(origin.x() + 60, origin.y() + 110);
    if (found == seen) {
        found = seen->childAt(origin.x() + 60, origin.y() + 110);
    }
    EXPECT_EQ(found, seen->child(85));
}

TEST_F(CollectionAccessibilityTest, anItemCanBePressedAlsoOffScreen)
{
    QAccessibleInterface* const item = list()->child(700);
    QAccessibleActionInterface* const actions = item->actionInterface();
    ASSERT_NE(actions, nullptr);
    EXPECT_EQ(actions->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
    actions->doAction(QAccessibleActionInterface::showMenuAction());
    EXPECT_THAT(items->selected, IsEmpty());
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_THAT(items->selected, ElementsAre(700));
    collection->setEnabled(false);
    EXPECT_TRUE(item->state().disabled);
    EXPECT_THAT(actions->actionNames(), IsEmpty());
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_THAT(items->selected, ElementsAre(700));
}

TEST_F(CollectionAccessibilityTest, anItemThatIsHeldIsNotValidOnceTheListIsTooShort)
{
    QAccessibleInterface* const seen = list();
    QAccessibleInterface* const item = seen->child(999);
    const QAccessible::Id id = QAccessible::uniqueId(item);
    change({7, 8, 9});
    EXPECT_EQ(seen->childCount(), 3);
    EXPECT_FALSE(item->isValid());
    EXPECT_TRUE(item->state().invalid);
    EXPECT_EQ(nameOf(item), QString());
    EXPECT_EQ(item->rect(), QRect());
    EXPECT_EQ(seen->indexOfChild(item), -1);
    item->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_THAT(items->selected, IsEmpty());
    EXPECT_EQ(nameOf(seen->child(2)), QStringLiteral("sticker 9"));

    change(std::vector<int>(1000, 5));
    EXPECT_EQ(seen->child(999), item);
    EXPECT_EQ(QAccessible::uniqueId(item), id);
    EXPECT_TRUE(item->isValid());
}

TEST_F(CollectionAccessibilityTest, aNameIsSafeWhileTheDataIsAheadOfTheView)
{
    QAccessibleInterface* const item = list()->child(999);
    items->numbers = {1};
    EXPECT_EQ(nameOf(item), QString());
    items.reset();
    EXPECT_EQ(nameOf(item), QString());
}

TEST_F(CollectionAccessibilityTest, aChangeOfTheListIsTold)
{
    listen();
    QAccessibleInterface* const seen = list();
    QAccessibleInterface* const first = seen->child(0);
    QAccessibleInterface* const second = seen->child(1);
    EXPECT_EQ(nameOf(first), QStringLiteral("sticker 0"));
    EXPECT_EQ(nameOf(second), QStringLiteral("sticker 1"));
    seen->child(2); // whose name nobody has
    change({7, 1, 9});
    EXPECT_THAT(told, testing::Contains(ToldEvent{QAccessible::ObjectReorder, seen}));
    EXPECT_THAT(told, testing::Contains(ToldEvent{QAccessible::NameChanged, first}));
    EXPECT_THAT(told, testing::Not(testing::Contains(ToldEvent{QAccessible::NameChanged, second})));
    EXPECT_THAT(told, testing::SizeIs(2));
    EXPECT_EQ(nameOf(first), QStringLiteral("sticker 7"));
}

TEST_F(CollectionAccessibilityTest, aBatchOfChangesIsTold)
{
    QAccessibleInterface* const seen = list();
    EXPECT_EQ(nameOf(seen->child(4)), QStringLiteral("sticker 4"));
    listen();
    collection->performBatchUpdates([this] {
        items->numbers.erase(items->numbers.begin());
        collection->deleteItemsAtIndexPaths({0});
    });
    EXPECT_EQ(seen->childCount(), count - 1);
    EXPECT_THAT(told, ElementsAre(ToldEvent{QAccessible::ObjectReorder, seen},
                                  ToldEvent{QAccessible::NameChanged, seen->child(4)}));
    EXPECT_EQ(nameOf(seen->child(4)), QStringLiteral("sticker 5"));
}

TEST_F(CollectionAccessibilityTest, noNameIsAskedForWhileNoToolRuns)
{
    nameOf(list()->child(0));
    items->names = 0;
    change({7, 8, 9});
    EXPECT_EQ(items->names, 0);
}

TEST_F(CollectionAccessibilityTest, theKeyboardsItemIsTold)
{
    QAccessibleInterface* const seen = list();
    EXPECT_EQ(seen->focusChild(), nullptr);
    listen();
    collection->forceActiveFocus(Qt::TabFocusReason);
    QTest::keyClick(&window(), Qt::Key_Right);
    const int focused = static_cast<int>(collection->focusedItem());
    ASSERT_GE(focused, 0);
    EXPECT_EQ(seen->focusChild(), seen->child(focused));
    EXPECT_TRUE(seen->child(focused)->state().focused);
    EXPECT_FALSE(seen->child(focused + 1)->state().focused);
    ASSERT_FALSE(told.empty());
    EXPECT_EQ(told.back(), (ToldEvent{QAccessible::Focus, seen->child(focused)}));
}

TEST_F(CollectionAccessibilityTest, aHiddenListIsInvisible)
{
    QAccessibleInterface* const seen = list();
    collection->setHidden(true);
    EXPECT_TRUE(seen->state().invisible);
    EXPECT_TRUE(seen->child(0)->state().invisible);
    EXPECT_TRUE(seen->isValid());
    collection->removeFromSuperview();
    EXPECT_EQ(seen->parent(), nullptr);
    EXPECT_EQ(seen->window(), nullptr);
    EXPECT_EQ(seen->rect(), QRect());
    EXPECT_EQ(seen->childAt(100, 100), nullptr);
}

TEST_F(CollectionAccessibilityTest, theInterfacesEndWithTheView)
{
    QAccessibleInterface* const seen = list();
    const QAccessible::Id listId = QAccessible::uniqueId(seen);
    const QAccessible::Id itemId = QAccessible::uniqueId(seen->child(3));
    const QPointer<CollectionView> view = collection.get();
    collection->removeFromSuperview();
    collection.reset();
    drainMainQueue();
    ASSERT_TRUE(view.isNull());
    EXPECT_EQ(QAccessible::accessibleInterface(listId), nullptr);
    EXPECT_EQ(QAccessible::accessibleInterface(itemId), nullptr);
}

TEST_F(CollectionAccessibilityTest, aDerivedCollectionViewIsAListToo)
{
    class Derived : public CollectionView {
    public:
        using CollectionView::CollectionView;
    };
    const auto derived = makeView<Derived>(std::make_shared<CollectionViewFlowLayout>());
    derived->setAccessibilityRole(QAccessible::List);
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(derived.get());
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::List);
    EXPECT_EQ(seen->childCount(), 0);
    EXPECT_EQ(seen->childAt(0, 0), nullptr);
}

} // namespace
