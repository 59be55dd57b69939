#include "picker/manager/ViewManagerTest.h"
#include "platform/ui/Button.h"

#include <thread>

// What a manager has loaded, and the road from there to a view.

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;
using State = QXSDKKovalinDataProviderState;

namespace {

const QString successLine = QStringLiteral("[VoleKit] Dynamic config update status: success");
const QString failureLine = QStringLiteral("[VoleKit] Dynamic config update status: failure");

class ViewManagerLoadingTest : public ViewManagerTest {
protected:
    [[nodiscard]] bool becomes(QXSDKKovalinViewType type) const
    {
        return waitFor([this, type] { return currentType() == type; });
    }
    /// Has a view show archived packs.
    void showArchive(const QString& comicId)
    {
        storeArchive(comicId);
        manager->loadPacks();
        // The provider tells before it takes the state.
        ASSERT_TRUE(waitFor([this] { return provider->state() == State::ArchivedContent; }));
        settle();
        ASSERT_EQ(currentType(), QXSDKKovalinViewTypeContent);
    }
    [[nodiscard]] QStringList shown() const { return comicIdsOf(*manager->stickerView()->kovalins()); }
    [[nodiscard]] std::shared_ptr<Button> retryButton() const { return partOf<Button>(*current(), 2); }
    void tapRetry() { tap(place.topLeft() + retryButton()->frame().center()); }
};

// The configuration comes first

TEST_F(ViewManagerLoadingTest, theArchiveIsReadOnceTheConfigurationIsRefreshed)
{
    storeArchive(QStringLiteral("archived"));
    configs->holds = true;
    const LogLines lines;
    manager->loadPacks();
    EXPECT_EQ(configs->waitingCount(), 1U);
    EXPECT_EQ(provider->state(), State::Uninitialized);
    configs->answer(true);
    EXPECT_EQ(LogLines::count(successLine), 1);
    EXPECT_EQ(LogLines::count(failureLine), 0);
    ASSERT_TRUE(becomes(QXSDKKovalinViewTypeContent));
    settle();
    expectShown(QXSDKKovalinViewTypeContent);
    EXPECT_EQ(shown(), QStringList{QStringLiteral("archived")});
    EXPECT_EQ(login->requestCount(), 0U);
}

TEST_F(ViewManagerLoadingTest, theArchiveIsReadAlsoIfTheConfigurationCannotBeRefreshed)
{
    storeArchive(QStringLiteral("archived"));
    configs->holds = true;
    const LogLines lines;
    manager->loadPacks();
    configs->answer(false);
    EXPECT_EQ(LogLines::count(successLine), 0);
    EXPECT_EQ(LogLines::count(failureLine), 1);
    EXPECT_TRUE(becomes(QXSDKKovalinViewTypeContent));
}

TEST_F(ViewManagerLoadingTest, contentIsFetchedOnceTheConfigurationIsRefreshed)
{
    configs->holds = true;
    const LogLines lines;
    manager->update();
    settle();
    EXPECT_EQ(login->requestCount(), 0U);
    configs->answer(true);
    EXPECT_EQ(login->requestCount(), 1U) << "at once";
    EXPECT_EQ(LogLines::count(successLine), 1);
}

TEST_F(ViewManagerLoadingTest, contentIsFetchedAlsoIfTheConfigurationCannotBeRefreshed)
{
    configs->holds = true;
    const LogLines lines;
    manager->update();
    configs->answer(false);
    EXPECT_EQ(login->requestCount(), 1U);
    EXPECT_EQ(LogLines::count(failureLine), 1);
}

TEST_F(ViewManagerLoadingTest, theLoginIsAskedAboutOnceTheConfigurationIsRefreshed)
{
    configs->holds = true;
    manager->update();
    login->isLinked = false;
    configs->answer(false);
    settle();
    expectShown(QXSDKKovalinViewTypeLogin);

    manager->update();
    login->isLinked = true;
    configs->answer(true);
    settle();
    EXPECT_EQ(login->requestCount(), 1U);
    EXPECT_THAT(observer->types, ElementsAre(3));
}

// From the start

TEST_F(ViewManagerLoadingTest, nothingIsShownUntilSomethingIsKnown)
{
    manager->loadPacks();
    manager->update();
    settle();
    EXPECT_EQ(provider->state(), State::LoadingRemote);
    EXPECT_THAT(container->subviews(), IsEmpty());
    answerPacks(0);
    expectShown(QXSDKKovalinViewTypeContent);
}

TEST_F(ViewManagerLoadingTest, archivedStickersAreShownUntilFreshOnesAreThere)
{
    showArchive(QStringLiteral("archived"));
    const auto view = current();
    update();
    ASSERT_EQ(login->requestCount(), 1U);
    EXPECT_EQ(shown(), QStringList{QStringLiteral("archived")});
    answerPacks(0, QStringLiteral("fresh"));
    EXPECT_EQ(current(), view);
    EXPECT_EQ(searchEngine->loads.load(), 2) << "which has the view show them, once they are indexed";
    engine->tellProcessed();
    EXPECT_EQ(shown(), QStringList{QStringLiteral("fresh")});
    EXPECT_THAT(observer->types, ElementsAre(1));
}

TEST_F(ViewManagerLoadingTest, aUserWithoutContentIsLedToAvatars)
{
    update();
    answerKovalin(0, {});
    expectShown(QXSDKKovalinViewTypeCreateAvatar);
}

TEST_F(ViewManagerLoadingTest, anAccountWithoutThePermissionIsAskedForItAndThenHasContent)
{
    login->hasScope = false;
    update();
    expectShown(QXSDKKovalinViewTypeNoPermission);
    EXPECT_EQ(login->requestCount(), 0U);
    login->hasScope = true;
    login->link();
    settle();
    ASSERT_EQ(login->requestCount(), 1U) << "the login and the change of it have loaded once";
    answerPacks(0);
    expectShown(QXSDKKovalinViewTypeContent);
    const auto told = eventsNamed("kovalin_kit_permission_update");
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told.front().value("status"), "1");
}

TEST_F(ViewManagerLoadingTest, aFailedRefreshKeepsTheStickers)
{
    showArchive(QStringLiteral("archived"));
    update();
    const LogLines lines;
    answerFailure(0, 0);
    expectShown(QXSDKKovalinViewTypeContent);
    EXPECT_EQ(LogLines::count(QStringLiteral("[ERROR] failed fetching Kovalin sticker packs")), 1);
}

// Another try

TEST_F(ViewManagerLoadingTest, anotherTryLoadsAgainAndTheErrorStaysUntilThereIsAnAnswer)
{
    update();
    answerFailure(0, 500);
    expectShown(QXSDKKovalinViewTypeError);
    const auto first = current();
    tapRetry();
    ASSERT_EQ(login->requestCount(), 2U);
    settle();
    EXPECT_EQ(current(), first);
    tapRetry();
    EXPECT_EQ(login->requestCount(), 2U) << "one at a time";

    answerFailure(1, 0);
    expectShown(QXSDKKovalinViewTypeError);
    EXPECT_NE(current(), first);
    tapRetry();
    ASSERT_EQ(login->requestCount(), 3U);
    answerPacks(2);
    expectShown(QXSDKKovalinViewTypeContent);
    EXPECT_THAT(observer->types, ElementsAre(5, 5, 1));
}

TEST_F(ViewManagerLoadingTest, anotherTryDoesNotNeedTheManagerNorKeepsIt)
{
    update();
    answerFailure(0, 500);
    const auto view = current();
    const std::weak_ptr<Manager> gone = manager;
    manager.reset();
    EXPECT_TRUE(gone.expired());
    tap(place.topLeft() + partOf<Button>(*view, 2)->frame().center());
    EXPECT_EQ(login->requestCount(), 2U);
    answerPacks(1);
    EXPECT_EQ(provider->state(), State::FreshContent);
}

// Logins

TEST_F(ViewManagerLoadingTest, aLogoutLeadsToTheLoginAndALoginBackToTheStickers)
{
    update();
    answerPacks(0);
    expectShown(QXSDKKovalinViewTypeContent);
    observer->then = [this](const QXSDKKovalinViewProtocol*) {
        EXPECT_FALSE(provider->packs()) << "the provider has been told before";
    };
    login->unlink();
    settle();
    expectShown(QXSDKKovalinViewTypeLogin);
    observer->then = {};

    login->link();
    settle();
    expectShown(QXSDKKovalinViewTypeLogin);
    ASSERT_EQ(login->requestCount(), 2U);
    answerPacks(1);
    expectShown(QXSDKKovalinViewTypeContent);
    EXPECT_THAT(observer->types, ElementsAre(1, 3, 1));
}

TEST_F(ViewManagerLoadingTest, aLogoutDuringARequestEndsAtTheLogin)
{
    update();
    login->unlink();
    settle();
    expectShown(QXSDKKovalinViewTypeLogin);
    answerPacks(0);
    EXPECT_EQ(provider->state(), State::LoggedOut);
    expectShown(QXSDKKovalinViewTypeLogin);
}

// Another picker

TEST_F(ViewManagerLoadingTest, aSecondPickerHasItsFirstContentFromMemory)
{
    update();
    answerPacks(0);
    const auto second = newManager();
    const auto itsObserver = std::make_shared<RecordingManagerObserver>();
    second->registerWeakObserver(itsObserver);
    second->update();
    settle();
    EXPECT_EQ(login->requestCount(), 1U) << "the packs are fresh";
    EXPECT_EQ(second->currentView(), nullptr);
    second->loadPacks();
    settle();
    EXPECT_THAT(itsObserver->types, ElementsAre(1));
    EXPECT_THAT(observer->types, ElementsAre(1)) << "the first keeps its view";
}

// Threads

TEST_F(ViewManagerLoadingTest, configurationsMayBeAnsweredOnAnyThread)
{
    storeArchive(QStringLiteral("archived"));
    configs->holds = true;
    manager->loadPacks();
    std::thread([this] { configs->answer(true); }).join();
    ASSERT_TRUE(waitFor([this] { return provider->state() == State::ArchivedContent; }));
    ASSERT_TRUE(becomes(QXSDKKovalinViewTypeContent));
    manager->update();
    std::thread([this] { configs->answer(false); }).join();
    EXPECT_EQ(login->requestCount(), 1U);
    login->isLinked = false;
    manager->update();
    std::thread([this] { configs->answer(true); }).join();
    EXPECT_EQ(currentType(), QXSDKKovalinViewTypeContent) << "views change on the main thread alone";
    settle();
    expectShown(QXSDKKovalinViewTypeLogin);
}

} // namespace
