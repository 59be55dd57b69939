#include "picker/content/RecordingContentDelegate.h"
#include "picker/icon/QXSDKKovalinIconView.h"
#include "picker/manager/ViewManagerTest.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/NotificationCenter.h"

#include <QtCore/QCoreApplication>

#include <atomic>
#include <latch>
#include <thread>

// A manager is told things on any thread, and goes at any moment, also at the word of those whom it tells.

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ViewManagerLifetimeTest : public ViewManagerTest {
protected:
    /// The controller goes, with all that it owns.
    void letGo()
    {
        gone = manager;
        manager.reset();
        if (container) {
            container->removeFromSuperview();
        }
        container.reset();
    }
    void letGoWhenTold()
    {
        observer->then = [this](const QXSDKKovalinViewProtocol*) {
            letGo();
        };
    }
    void expectGone()
    {
        settle();
        EXPECT_EQ(manager, nullptr);
        EXPECT_TRUE(gone.expired());
        EXPECT_THAT(root()->subviews(), IsEmpty());
    }

    std::weak_ptr<Manager> gone;
};

// In its observers

TEST_F(ViewManagerLifetimeTest, mayGoWhenContentIsShown)
{
    manager->setSearchTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeReplace);
    letGoWhenTold();
    provider->setPacks(packs());
    manager->contentDidLoadWithPacks(packs());
    expectGone();
    EXPECT_THAT(observer->types, ElementsAre(1));
}

TEST_F(ViewManagerLifetimeTest, mayGoWhenThereIsNoContent)
{
    letGoWhenTold();
    manager->contentDidLoadWithPacks(std::nullopt);
    expectGone();
    EXPECT_THAT(observer->types, ElementsAre(2));
}

TEST_F(ViewManagerLifetimeTest, mayGoWhenTheLoginIsShown)
{
    letGoWhenTold();
    login->isLinked = false;
    manager->update();
    expectGone();
    EXPECT_THAT(observer->types, ElementsAre(3));
}

TEST_F(ViewManagerLifetimeTest, mayGoWhenThePermissionIsAskedFor)
{
    letGoWhenTold();
    login->hasScope = false;
    manager->contentLoadDidFail(errorWithStatusCode(401, {}, {}));
    expectGone();
    EXPECT_THAT(observer->types, ElementsAre(4));
}

TEST_F(ViewManagerLifetimeTest, mayGoWhenAFailureIsShown)
{
    letGoWhenTold();
    manager->contentLoadDidFail(errorWithStatusCode(500, {}, {}));
    expectGone();
    EXPECT_THAT(observer->types, ElementsAre(5));
}

TEST_F(ViewManagerLifetimeTest, mayGoWhenAViewIsTakenAway)
{
    showContent();
    letGoWhenTold();
    manager->setCurrentView({});
    expectGone();
}

TEST_F(ViewManagerLifetimeTest, mayGoWhenTheViewThatLeavesLosesTheFocus)
{
    showContent();
    const auto delegate = std::make_shared<RecordingContentDelegate>();
    manager->stickerView()->setDelegate(delegate);
    tap(place.topLeft() + QPointF(160, 20)); // the search bar's field
    EXPECT_THAT(delegate->told, ElementsAre("focus"));
    delegate->then = [this] {
        letGo();
    };
    manager->contentDidLoadWithPacks(std::nullopt);
    expectGone();
    EXPECT_THAT(delegate->told, ElementsAre("focus", "no focus"));
}

// Between what it is told and what comes of it

TEST_F(ViewManagerLifetimeTest, whatWasToldIsDecidedAlsoIfTheControllerHasGone)
{
    manager->contentDidLoadWithPacks(packs());
    letGo();
    EXPECT_FALSE(gone.expired()) << "what was told holds it";
    expectGone();
    EXPECT_THAT(observer->types, ElementsAre(1));
}

TEST_F(ViewManagerLifetimeTest, aFailureIsDecidedAlsoIfTheControllerHasGone)
{
    manager->contentLoadDidFail(errorWithStatusCode(500, {}, {}));
    letGo();
    EXPECT_FALSE(gone.expired());
    expectGone();
    EXPECT_THAT(observer->types, ElementsAre(5));
}

TEST_F(ViewManagerLifetimeTest, anUpdateKeepsItUntilItIsDecided)
{
    configs->holds = true;
    login->isLinked = false;
    manager->update();
    letGo();
    EXPECT_FALSE(gone.expired());
    configs->answer(true);
    EXPECT_FALSE(gone.expired()) << "the login is shown in a later turn";
    expectGone();
    EXPECT_THAT(observer->types, ElementsAre(3));
}

TEST_F(ViewManagerLifetimeTest, mayGoOnTheThreadThatEndsAnUpdate)
{
    showContent();
    configs->holds = true;
    manager->update();
    letGo();
    EXPECT_FALSE(gone.expired());
    std::thread([this] { configs->answer(true); }).join();
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(login->requestCount(), 1U);
    expectGone();
}

TEST_F(ViewManagerLifetimeTest, theArchiveIsReadWithoutIt)
{
    storeArchive(QStringLiteral("archived"));
    configs->holds = true;
    manager->loadPacks();
    letGo();
    EXPECT_TRUE(gone.expired());
    configs->answer(true);
    EXPECT_TRUE(waitFor([this] { return provider->packs().has_value(); }));
    expectGone();
}

TEST_F(ViewManagerLifetimeTest, mayGoDuringASearch)
{
    showContent();
    login->isLinked = false;
    const auto icon = QXSDKKovalinIconView::create(pictures.cache);
    manager->kovalinIcons().add(icon);
    manager->setSearchTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeReplace);
    letGo();
    expectGone();
    engine->answer(0, {sticker(QStringLiteral("found"))}, {});
    EXPECT_EQ(icon->sticker(), nullptr);
    EXPECT_THAT(events->events(), IsEmpty());
}

TEST_F(ViewManagerLifetimeTest, isToldNothingAfterItsEnd)
{
    login->link();
    letGo();
    EXPECT_TRUE(gone.expired());
    provider->loadContentForLoggedInState();
    answerPacks(0);
    NotificationCenter::qxsdkCenter().postNotificationName(kQXSDKLoginClientStateChangeNotification);
    sessions->didBecomeActive();
    sessions->willResignActive();
    settle();
    EXPECT_THAT(observer->types, IsEmpty());
}

TEST_F(ViewManagerLifetimeTest, itsViewsGoWithItAndTheContainer)
{
    showContent();
    const std::weak_ptr<View> view = current();
    letGo();
    drainMainQueue();
    EXPECT_TRUE(view.expired());
    expectGone();
}

// On other threads

TEST_F(ViewManagerLifetimeTest, contentMayBeToldOnAnyThread)
{
    constexpr int threadCount = 4;
    constexpr int rounds = 25;
    observer->then = [](const QXSDKKovalinViewProtocol*) {
        EXPECT_TRUE(isMainThread());
    };
    provider->setPacks(packs());
    std::latch start(threadCount);
    std::atomic<int> ended = 0;
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&, content = packs()] {
            start.arrive_and_wait();
            for (int round = 0; round < rounds; ++round) {
                manager->contentDidLoadWithPacks(content);
                manager->contentLoadDidFail(errorWithStatusCode(500, {}, {}));
            }
            ++ended;
        });
    }
    const LogLines lines;
    EXPECT_TRUE(waitFor([&] { return ended == threadCount; }));
    for (auto& thread : threads) {
        thread.join();
    }
    settle();
    expectShown(QXSDKKovalinViewTypeContent);
    EXPECT_EQ(observer->types.back(), QXSDKKovalinViewTypeContent);
    EXPECT_THAT(observer->types, ElementsAre(1)) << "content was told first by each";
    EXPECT_EQ(LogLines::count(QStringLiteral("failed fetching Kovalin sticker packs")), threadCount * rounds);
}

TEST_F(ViewManagerLifetimeTest, updatesMayEndOnSeveralThreadsAtOnce)
{
    constexpr int threadCount = 4;
    constexpr int rounds = 25;
    login->isLinked = false;
    configs->holds = true;
    for (int update = 0; update < threadCount * rounds; ++update) {
        manager->update();
        manager->loadPacks();
    }
    const LogLines lines; // instead of hundreds on the screen
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([this] {
            for (int round = 0; round < 2 * rounds; ++round) {
                configs->answer(round % 2 == 0);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    settle();
    expectShown(QXSDKKovalinViewTypeLogin);
    EXPECT_THAT(observer->types, ElementsAre(3));
    letGo();
    expectGone();
}

TEST_F(ViewManagerLifetimeTest, hundredManagersComeAndGoAtAnyStage)
{
    const LogLines lines; // instead of hundreds on the screen
    provider->setPacks(packs());
    letGo();
    for (int round = 0; round < 100; ++round) {
        container = makeView<QXSDKKovalinStickerPickerContainerView>();
        container->setFrame(place);
        root()->addSubview(container);
        manager = newManager();
        manager->setContainerView(container);
        manager->setSearchTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeReplace);
        const int stage = round % 6;
        login->isLinked = stage % 2 == 0;
        manager->loadPacks();
        manager->update();
        std::thread other([told = manager, content = packs()] { told->contentDidLoadWithPacks(content); });
        if (stage > 0) {
            manager->contentLoadDidFail(errorWithStatusCode(500, {}, {}));
        }
        for (int turn = 0; turn < stage; ++turn) {
            QCoreApplication::processEvents();
            grab();
        }
        if (stage > 3) {
            manager->contentDidLoadWithPacks(std::nullopt);
        }
        letGo();
        other.join();
        drainMainQueue();
    }
    expectGone();
}

} // namespace
