#include "picker/manager/QXSDKKovalinViewManager.h"

#include "picker/config/QXSDKKovalinStickerPickerConfigBuilder.h"
#include "picker/icon/QXSDKKovalinIconView.h"
#include "picker/manager/ViewManagerTest.h"

#include <functional>

// How a manager is set up, and the place of its current view.

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PlainView final : public View, public QXSDKKovalinViewProtocol {
public:
    explicit PlainView(QXSDKKovalinViewType type)
        : _type(type)
    {
    }
    [[nodiscard]] QXSDKKovalinViewType type() const override { return _type; }

private:
    const QXSDKKovalinViewType _type;
};

class QXSDKKovalinViewManagerTest : public ViewManagerTest {
protected:
    void show(const std::shared_ptr<PlainView>& view) { manager->setCurrentView({view, view.get()}); }

    const std::shared_ptr<PlainView> first = makeView<PlainView>(QXSDKKovalinViewTypeLogin);
    const std::shared_ptr<PlainView> second = makeView<PlainView>(QXSDKKovalinViewTypeError);
};

// Set-up

TEST_F(QXSDKKovalinViewManagerTest, beginsWithoutAView)
{
    EXPECT_EQ(manager->currentView(), nullptr);
    EXPECT_EQ(manager->currentViewItem(), nullptr);
    EXPECT_EQ(manager->stickerView(), nullptr);
    EXPECT_EQ(currentType(), 0);
    EXPECT_TRUE(manager->kovalinIcons().isEmpty());
    EXPECT_THAT(container->subviews(), IsEmpty());
    EXPECT_EQ(login->requestCount(), 0U) << "nothing is loaded before it is asked to";
}

TEST_F(QXSDKKovalinViewManagerTest, keepsItsConfigurationOrHasTheDefaultOne)
{
    const auto config = QXSDKKovalinStickerPickerConfigBuilder().withShowSearchBar(false).build();
    EXPECT_EQ(newManager(config)->config(), config);
    ASSERT_TRUE(manager->config());
    EXPECT_TRUE(manager->config()->showSearchBar());
}

TEST_F(QXSDKKovalinViewManagerTest, buildsItsViewsWithItsConfiguration)
{
    const auto container2 = makeView<QXSDKKovalinStickerPickerContainerView>();
    const auto other = newManager(QXSDKKovalinStickerPickerConfigBuilder().withShowSearchBar(false).build());
    other->setContainerView(container2);
    other->contentDidLoadWithPacks(packs());
    settle();
    ASSERT_TRUE(other->stickerView());
    EXPECT_TRUE(barOf(*other->stickerView())->isHidden());
}

TEST_F(QXSDKKovalinViewManagerTest, isToldOfContentTogetherWithTheSearchEngine)
{
    provider->setPacks(packs());
    provider->loadContentForLoggedInState();
    ASSERT_EQ(login->requestCount(), 1U);
    answerPacks(0);
    EXPECT_EQ(searchEngine->loads.load(), 1);
    expectShown(QXSDKKovalinViewTypeContent);
}

TEST_F(QXSDKKovalinViewManagerTest, isToldOfEachFailureTogetherWithTheSearchEngine)
{
    provider->loadContentForLoggedInState();
    answerFailure(0, 500);
    EXPECT_EQ(searchEngine->failures.load(), 1);
    expectShown(QXSDKKovalinViewTypeError);
}

TEST_F(QXSDKKovalinViewManagerTest, keepsItsCollaborators)
{
    const std::weak_ptr<QXSDKKovalinStickerPickerSessionManager> itsSessions = sessions;
    const std::weak_ptr<QXSDKKovalinFriendState> itsFriends = friends;
    sessions.reset();
    friends.reset();
    logger.reset();
    EXPECT_FALSE(itsSessions.expired());
    EXPECT_FALSE(itsFriends.expired());
    showContent();
    expectShown(QXSDKKovalinViewTypeContent);
    manager.reset();
    container->removeFromSuperview();
    container.reset();
    settle();
    EXPECT_TRUE(itsFriends.expired());
    EXPECT_TRUE(itsSessions.expired());
}

// The current view

TEST_F(QXSDKKovalinViewManagerTest, aViewFillsTheContainerBeforeObserversAreTold)
{
    observer->then = [this](const QXSDKKovalinViewProtocol* view) {
        EXPECT_EQ(view, first.get());
        expectShown(QXSDKKovalinViewTypeLogin);
    };
    show(first);
    EXPECT_THAT(observer->types, ElementsAre(3)) << "at once";
    EXPECT_EQ(manager->currentViewItem(), first);
}

TEST_F(QXSDKKovalinViewManagerTest, theFormerViewHasLeftTheContainerBeforeObserversAreTold)
{
    show(first);
    observer->then = [this](const QXSDKKovalinViewProtocol* view) {
        EXPECT_EQ(view, second.get());
        EXPECT_EQ(first->superview(), nullptr);
        expectShown(QXSDKKovalinViewTypeError);
    };
    show(second);
    EXPECT_THAT(observer->types, ElementsAre(3, 5));
}

TEST_F(QXSDKKovalinViewManagerTest, thePresentViewIsLeftAsItIs)
{
    show(first);
    first->setFrame({1, 2, 3, 4});
    show(first);
    EXPECT_EQ(first->frame(), QRectF(1, 2, 3, 4));
    EXPECT_THAT(observer->types, ElementsAre(3));
}

TEST_F(QXSDKKovalinViewManagerTest, noViewIsTakenOutAndTold)
{
    show(first);
    manager->setCurrentView({});
    EXPECT_EQ(manager->currentView(), nullptr);
    EXPECT_THAT(container->subviews(), IsEmpty());
    EXPECT_THAT(observer->types, ElementsAre(3, 0));
    manager->setCurrentView({});
    EXPECT_THAT(observer->types, ElementsAre(3, 0)) << "it is the present one";
}

TEST_F(QXSDKKovalinViewManagerTest, theCurrentViewLivesAsLongAsItIsOne)
{
    auto view = makeView<PlainView>(QXSDKKovalinViewTypeError);
    const std::weak_ptr<View> itsView = view;
    container.reset();
    root()->subviews().first()->removeFromSuperview();
    show(view);
    view.reset();
    drainMainQueue();
    EXPECT_FALSE(itsView.expired());
    show(first);
    EXPECT_TRUE(itsView.expired());
}

TEST_F(QXSDKKovalinViewManagerTest, aContentViewIsTheStickerView)
{
    showContent();
    EXPECT_EQ(manager->stickerView(), manager->currentViewItem());
    show(first);
    EXPECT_EQ(manager->stickerView(), nullptr);
}

// Observers

TEST_F(QXSDKKovalinViewManagerTest, tellsEachObserverOnceAndThoseThatLeftNoMore)
{
    const auto other = std::make_shared<RecordingManagerObserver>();
    manager->registerWeakObserver(other);
    manager->registerWeakObserver(other);
    show(first);
    EXPECT_THAT(other->types, ElementsAre(3));
    manager->deregisterWeakObserver(other);
    show(second);
    EXPECT_THAT(other->types, ElementsAre(3));
    EXPECT_THAT(observer->types, ElementsAre(3, 5));
}

TEST_F(QXSDKKovalinViewManagerTest, anObserverNeedntLeaveBeforeItDies)
{
    const std::weak_ptr<RecordingManagerObserver> gone = observer;
    observer.reset();
    EXPECT_TRUE(gone.expired()) << "held weakly";
    show(first);
    EXPECT_EQ(manager->currentViewItem(), first);
}

TEST_F(QXSDKKovalinViewManagerTest, anObserverMayHaveAnotherViewShown)
{
    observer->then = [this](const QXSDKKovalinViewProtocol* view) {
        if (view == first.get()) {
            show(second);
        }
    };
    show(first);
    expectShown(QXSDKKovalinViewTypeError);
    EXPECT_EQ(container->subviews(), QList<std::shared_ptr<View>>{second});
}

TEST_F(QXSDKKovalinViewManagerTest, anObserverMayHaveAnotherViewShownInPlaceOfTheStickers)
{
    manager->setSearchTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeReplace);
    observer->then = [this](const QXSDKKovalinViewProtocol* view) {
        if (QXSDKKovalinViewProtocol::typeOf(view) == QXSDKKovalinViewTypeContent) {
            show(second);
        }
    };
    showContent();
    expectShown(QXSDKKovalinViewTypeError);
    EXPECT_THAT(engine->searches, IsEmpty());
}

// Without a container

TEST_F(QXSDKKovalinViewManagerTest, withoutAContainerAViewBecomesCurrentAllTheSame)
{
    manager->setContainerView(nullptr);
    first->setFrame({1, 2, 3, 4});
    show(first);
    EXPECT_TRUE(first->frame().isEmpty());
    EXPECT_EQ(first->superview(), nullptr);
    EXPECT_THAT(observer->types, ElementsAre(3));

    manager->setContainerView(container);
    EXPECT_THAT(container->subviews(), IsEmpty()) << "only what becomes current later";
    show(second);
    expectShown(QXSDKKovalinViewTypeError);
}

TEST_F(QXSDKKovalinViewManagerTest, theContainerIsHeldWeakly)
{
    show(first);
    const std::weak_ptr<View> gone = container;
    container->removeFromSuperview();
    container.reset();
    drainMainQueue();
    EXPECT_TRUE(gone.expired());
    showContent();
    EXPECT_EQ(currentType(), QXSDKKovalinViewTypeContent);
    EXPECT_EQ(current()->superview(), nullptr);
}

TEST_F(QXSDKKovalinViewManagerTest, aViewTakesTheContainersSizeOfThatMoment)
{
    show(first);
    container->setFrame({0, 0, 200, 100});
    show(second);
    EXPECT_EQ(second->frame(), QRectF(0, 0, 200, 100));
}

} // namespace
