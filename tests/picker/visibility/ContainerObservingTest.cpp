#include "picker/visibility/ContainerTest.h"
#include "support/LogLines.h"

#include <QtCore/QSignalBlocker>

#include <gmock/gmock.h>

#include <functional>
#include <vector>

// What a container listens to, for how long, and what may be done when it tells.

using namespace kovalin::platform;
using kovalin::test::ContainerTest;
using kovalin::test::HostItem;
using kovalin::test::HostWindow;
using kovalin::test::LogLines;
using kovalin::test::waitFor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using ContainerObservingTest = ContainerTest;

// When it measures

TEST_F(ContainerObservingTest, measuresOnceForAllThatMovesInATurn)
{
    embed();
    delegate->told.clear();
    inner->setX(-500);
    EXPECT_THAT(delegate->told, IsEmpty()) << "a host may be at it still";
    inner->setX(0);
    outer->setWidth(10);
    outer->setWidth(200);
    settle();
    EXPECT_THAT(delegate->told, IsEmpty());
    outer->setHeight(10);
    settle();
    EXPECT_THAT(delegate->told, ElementsAre(false));
    outer->setHeight(200);
    settle();
    EXPECT_THAT(delegate->told, ElementsAre(false, true));
}

TEST_F(ContainerObservingTest, measuresWhatTheHostMovesItTo)
{
    embed();
    container->setX(180);
    settle();
    EXPECT_FALSE(container->isShown());
    container->setFrame({0, 0, 100, 100});
    settle();
    EXPECT_TRUE(container->isShown());
}

TEST_F(ContainerObservingTest, measuresWhenTheWindowIsResized)
{
    embed();
    window().resize(200, 20);
    EXPECT_TRUE(waitFor([this] { return !container->isShown(); }));
    window().resize(200, 200);
    EXPECT_TRUE(waitFor([this] { return container->isShown(); }));
}

TEST_F(ContainerObservingTest, tellsOfWhatIsHiddenOrShownWhenTheWholeTreeKnows)
{
    embed();
    const HostItem below(inner.get());
    const HostItem beside(outer.get());
    QList<bool> seen;
    delegate->then = [&] {
        seen.append({outer->isVisible(), inner->isVisible(), below.isVisible(), beside.isVisible()});
    };
    outer->setVisible(false);
    EXPECT_THAT(seen, ElementsAre(false, false, false, false));
    seen.clear();
    outer->setVisible(true);
    EXPECT_THAT(seen, ElementsAre(true, true, true, true));
}

TEST_F(ContainerObservingTest, hearsOfHiddenItemsAfterAnItemAroundItHasMovedToAnother)
{
    embed();
    HostItem other(window().contentItem());
    inner->setParentItem(&other);
    settle();
    EXPECT_TRUE(container->isShown());
    outer->setVisible(false);
    EXPECT_TRUE(container->isShown());
    other.setVisible(false);
    EXPECT_FALSE(container->isShown());
    inner->setParentItem(outer.get());
    outer->setVisible(true);
    settle();
    EXPECT_TRUE(container->isShown());
}

// Observers

TEST_F(ContainerObservingTest, listensToAllAroundItWhileItIsInAWindow)
{
    const HostItem beside(outer.get());
    const int listenersBefore = outer->listeners();
    embed();
    EXPECT_GT(outer->listeners(), listenersBefore);
    EXPECT_EQ(outer->listeners(), inner->listeners());
    EXPECT_EQ(beside.listeners(), listenersBefore);
    container->setParentItem(nullptr);
    settle();
    EXPECT_EQ(outer->listeners(), listenersBefore);
    EXPECT_EQ(inner->listeners(), listenersBefore);
}

TEST_F(ContainerObservingTest, listensToNobodyOutsideOfAWindow)
{
    outer->setParentItem(nullptr);
    const int listenersBefore = outer->listeners();
    embed();
    EXPECT_EQ(outer->listeners(), listenersBefore);
}

TEST_F(ContainerObservingTest, takesItsListenersAlongFromWindowToWindow)
{
    HostWindow first;
    HostWindow second;
    const int windowListeners = first.listeners();
    HostItem firstItem(first.contentItem());
    HostItem secondItem(second.contentItem());
    const int itemListeners = firstItem.listeners();
    container->setParentItem(&firstItem);
    settle();
    EXPECT_GT(first.listeners(), windowListeners);
    EXPECT_GT(firstItem.listeners(), itemListeners);
    const int whenListening = firstItem.listeners();

    container->setParentItem(&secondItem);
    settle();
    EXPECT_TRUE(container->isShown());
    EXPECT_EQ(first.listeners(), windowListeners);
    EXPECT_EQ(firstItem.listeners(), itemListeners);
    EXPECT_EQ(secondItem.listeners(), whenListening) << "once each";
    first.hide();
    firstItem.setVisible(false);
    EXPECT_TRUE(container->isShown());
    second.hide();
    EXPECT_FALSE(container->isShown());

    container->setParentItem(nullptr);
    settle();
    EXPECT_EQ(second.listeners(), windowListeners);
    EXPECT_EQ(secondItem.listeners(), itemListeners);
}

TEST_F(ContainerObservingTest, takesItsListenersAlongWithTheItemsAroundIt)
{
    embed();
    HostItem other(window().contentItem());
    const int without = other.listeners();
    const int with = outer->listeners();
    inner->setParentItem(&other);
    settle();
    EXPECT_EQ(outer->listeners(), without);
    EXPECT_EQ(other.listeners(), with);
    EXPECT_EQ(inner->listeners(), with);
}

TEST_F(ContainerObservingTest, leavesNoListenersWhenItEnds)
{
    const int without = outer->listeners();
    embed();
    letGo();
    settle();
    EXPECT_EQ(outer->listeners(), without);
    EXPECT_EQ(inner->listeners(), without);
    outer->setVisible(false);
    outer->setWidth(1);
    EXPECT_THAT(delegate->told, ElementsAre(true)) << "nobody is told of the end";
}

TEST_F(ContainerObservingTest, warnsWhereSomebodyHasTakenItsListenersAway)
{
    embed();
    inner->setObjectName(QStringLiteral("page"));
    inner->disconnect();
    const LogLines lines;
    container->setParentItem(nullptr);
    settle();
    EXPECT_EQ(lines.count(QStringLiteral("[WARNING] Could not deregister observer from QQuickItem(page), reason: ")),
              1);
    EXPECT_EQ(lines.count(QStringLiteral("Could not deregister observer")), 1) << "from the others it could";
    container->setParentItem(outer.get());
    settle();
    EXPECT_TRUE(container->isShown());
}

TEST_F(ContainerObservingTest, hearsOfAHiddenItemThatSomebodyHasSilencedInALaterTurn)
{
    embed();
    inner->disconnect();
    inner->setVisible(false);
    settle();
    EXPECT_FALSE(container->isShown());
    const QSignalBlocker silence(inner.get());
    inner->setVisible(true);
    settle();
    EXPECT_TRUE(container->isShown());
}

// Ends

TEST_F(ContainerObservingTest, outlivesTheItemsAroundItAndTheWindow)
{
    embed();
    inner.reset();
    settle();
    EXPECT_EQ(container->parentItem(), nullptr);
    EXPECT_THAT(delegate->told, ElementsAre(true, false));
    container->setParentItem(outer.get());
    settle();
    EXPECT_TRUE(container->isShown());

    {
        HostWindow other;
        container->setParentItem(other.contentItem());
        settle();
        EXPECT_TRUE(container->isShown());
    }
    settle();
    EXPECT_EQ(container->window(), nullptr);
    EXPECT_FALSE(container->isShown());
}

TEST_F(ContainerObservingTest, doesntWarnOfItemsThatHaveEnded)
{
    embed();
    const LogLines lines;
    outer->setVisible(false);
    inner.reset();
    outer.reset();
    settle();
    EXPECT_EQ(lines.count(QStringLiteral("Could not deregister observer")), 0);
}

TEST_F(ContainerObservingTest, hearsOfAnItemFarAboveThatEnds)
{
    embed();
    outer.reset();
    settle();
    EXPECT_FALSE(container->isShown());
    EXPECT_EQ(container->parentItem(), inner.get());
    inner->setParentItem(window().contentItem());
    settle();
    EXPECT_TRUE(container->isShown());
}

// Whoever is told may do anything

TEST_F(ContainerObservingTest, holdsItsDelegateWeaklyAndDoesWithoutOne)
{
    embed();
    delegate.reset();
    outer->setVisible(false);
    EXPECT_FALSE(container->isShown());
    const auto other = std::make_shared<kovalin::test::RecordingContainerDelegate>();
    container->setDelegate(other);
    outer->setVisible(true);
    EXPECT_THAT(other->told, ElementsAre(true));
}

TEST_F(ContainerObservingTest, mayGoWhenItTells)
{
    const std::vector<std::function<void()>> ends{
        [this] { outer->setVisible(false); },
        [this] { inner->setVisible(false); },
        [this] { container->setVisible(false); },
        [this] { container->setHidden(true); },
        [this] { outer->setWidth(10); },
        [this] { container->setParentItem(nullptr); },
        [this] { container->removeFromSuperview(); },
        [this] { window().hide(); },
        [this] { inner.reset(); },
        [this] {
            container->setFrame({0, 0, 10, 10});
            container->layoutIfNeeded();
        },
    };
    for (std::size_t i = 0; i < ends.size(); ++i) {
        inner.reset();
        outer = std::make_unique<HostItem>(window().contentItem());
        inner = std::make_unique<HostItem>(outer.get());
        window().show();
        container = makeView<Container>();
        container->setFrame({0, 0, 100, 100});
        delegate = std::make_shared<kovalin::test::RecordingContainerDelegate>();
        container->setDelegate(delegate);
        embed();
        const std::weak_ptr<Container> gone = container;
        delegate->then = [this] {
            letGo();
        };
        ends.at(i)();
        settle();
        EXPECT_TRUE(gone.expired()) << i;
        EXPECT_THAT(delegate->told, ElementsAre(true, false)) << i;
    }
}

TEST_F(ContainerObservingTest, theItemsAroundItMayGoWhenItTellsOfAnother)
{
    embed();
    delegate->then = [this] {
        inner.reset();
    };
    outer->setVisible(false);
    settle();
    EXPECT_EQ(container->parentItem(), nullptr);
    EXPECT_THAT(delegate->told, ElementsAre(true, false));
}

TEST_F(ContainerObservingTest, mayBeMovedWhenItTells)
{
    embed();
    HostItem other(window().contentItem());
    delegate->then = [&] {
        delegate->then = {};
        container->setParentItem(&other);
    };
    outer->setVisible(false);
    settle();
    EXPECT_TRUE(container->isShown());
    EXPECT_THAT(delegate->told, ElementsAre(true, false, true));
    outer->setVisible(true);
    outer->setVisible(false);
    EXPECT_TRUE(container->isShown());
}

} // namespace
