#include "content/QXSDKKovalinStickerDataProvider.h"

#include "content/ContentTest.h"
#include "content/QXSDKKovalinPacksArchive.h"
#include "platform/foundation/Application.h"
#include "platform/foundation/KeyedArchiver.h"
#include "support/QtPrinting.h"
#include "support/ScriptedLoginClient.h"
#include "support/WaitFor.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;
using State = QXSDKKovalinDataProviderState;

namespace {

/// What an observer was told: "loaded" with the packs' ids, "loaded nothing", "failed" with the number; behind it the state at
/// that moment.
class Observer final : public QXSDKKovalinDataUpdateObserver {
public:
    explicit Observer(const QXSDKKovalinStickerDataProvider* provider)
        : _provider(provider)
    {
    }
    void contentDidLoadWithPacks(const std::optional<KovalinPackList>& packs) override
    {
        QString text = QStringLiteral("loaded nothing");
        if (packs) {
            QStringList ids;
            for (const auto& pack : *packs) {
                ids.append(pack->packId().value());
            }
            text = QStringLiteral("loaded ") + ids.join(u',');
        }
        add(text);
    }
    void contentLoadDidFail(const QXSDKError& error) override
    {
        add(QStringLiteral("failed %1").arg(error.statusCode));
    }
    [[nodiscard]] std::vector<QString> told() const
    {
        const std::scoped_lock lock(_mutex);
        return _told;
    }

private:
    void add(const QString& text)
    {
        const std::scoped_lock lock(_mutex);
        _told.push_back(text + QStringLiteral(" in %1").arg(static_cast<quint64>(_provider->state())));
    }
    const QXSDKKovalinStickerDataProvider* _provider;
    mutable std::mutex _mutex;
    std::vector<QString> _told;
};

class QXSDKKovalinStickerDataProviderTest : public testing::Test {
protected:
    QXSDKKovalinStickerDataProviderTest() { restart(); }
    ~QXSDKKovalinStickerDataProviderTest() override { Application::setState(ApplicationState::Active); }

    /// The provider of a new start over the files that are there.
    void restart()
    {
        archive = QXSDKKovalinPacksArchive::create();
        provider = QXSDKKovalinStickerDataProvider::create(archive);
        observer = std::make_shared<Observer>(provider.get());
        provider->addDataUpdateObserver(observer);
    }
    void store(const QString& packId)
    {
        ASSERT_TRUE(KeyedArchiver::archiveRootObject(KovalinPackList{namedPack(packId, packId)}, path));
    }
    [[nodiscard]] bool reaches(State state) const
    {
        return waitFor([&] { return provider->state() == state; });
    }
    /// The backend's answer to the last request: packs with these ids.
    void answer(const QStringList& packIds)
    {
        QJsonArray packs;
        for (const QString& id : packIds) {
            packs.append(
                QJsonObject{{QStringLiteral("id"), id},
                            {QStringLiteral("title"), id},
                            {QStringLiteral("visible"), true},
                            {QStringLiteral("stickers"), QJsonArray{QJsonObject{{QStringLiteral("comic_id"), id}}}}});
        }
        const QJsonDocument document(QJsonObject{{QStringLiteral("packs"), packs}});
        answerKovalin({{QStringLiteral("packs"), QString::fromUtf8(document.toJson())}});
    }
    void answerNoContent() { answerKovalin({}); }
    void answerKovalin(const QJsonObject& kovalin)
    {
        lastRequest().success(
            {{QStringLiteral("data"),
              QJsonObject{{QStringLiteral("me"), QJsonObject{{QStringLiteral("kovalin"), kovalin}}}}}});
        settle();
    }
    void fail(int status)
    {
        lastRequest().failure(errorWithStatusCode(status, {}, {}), false);
        settle();
    }
    [[nodiscard]] ScriptedLoginClient::Request lastRequest() const { return login->request(login->requestCount() - 1); }
    static void settle()
    {
        for (int turn = 0; turn < 3; ++turn) {
            drainMainQueue();
        }
    }
    void resign()
    {
        Application::setState(ApplicationState::Inactive);
        Application::setState(ApplicationState::Active);
    }
    /// Blocks until the archive has done all that it was given.
    void drainArchive()
    {
        std::atomic<bool> isDone = false;
        archive->unarchivePacksWithCompletion([&isDone](const auto&) { isDone = true; });
        ASSERT_TRUE(waitFor([&isDone] { return isDone.load(); }));
    }

    InstalledLoginClient login;
    OwnCachesDirectory caches;
    const QString path = caches.path(QStringLiteral("qxsdk-kovalin-packs.plist"));
    std::shared_ptr<QXSDKKovalinPacksArchive> archive;
    std::shared_ptr<QXSDKKovalinStickerDataProvider> provider;
    std::shared_ptr<Observer> observer;
};

TEST_F(QXSDKKovalinStickerDataProviderTest, BeginsUninitializedAndEmpty)
{
    EXPECT_EQ(provider->state(), State::Uninitialized);
    EXPECT_FALSE(provider->packs());
    EXPECT_FALSE(provider->popularKovalins());
    EXPECT_FALSE(provider->defaultTags());
}

// From the archive.

TEST_F(QXSDKKovalinStickerDataProviderTest, DoesNothingWithoutAnArchiveAtTheStart)
{
    provider->loadContentFromArchivedPacks();
    EXPECT_EQ(provider->state(), State::Uninitialized);
    EXPECT_THAT(observer->told(), IsEmpty());
}

TEST_F(QXSDKKovalinStickerDataProviderTest, LoadsTheArchiveAndTellsWhileItIsLoading)
{
    store(QStringLiteral("popular"));
    provider->loadContentFromArchivedPacks();
    ASSERT_TRUE(reaches(State::ArchivedContent));
    EXPECT_THAT(observer->told(), ElementsAre(QStringLiteral("loaded popular in 4")));
    ASSERT_TRUE(provider->packs());
    EXPECT_EQ(provider->popularKovalins()->size(), 1);
    EXPECT_EQ(provider->defaultTags(), QStringList{QStringLiteral("popular")});
}

TEST_F(QXSDKKovalinStickerDataProviderTest, TellsOfNothingWhereTheArchiveIsDamaged)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("damaged");
    file.close();
    provider->loadContentFromArchivedPacks();
    ASSERT_TRUE(reaches(State::NoContent));
    EXPECT_THAT(observer->told(), ElementsAre(QStringLiteral("loaded nothing in 4")));
}

TEST_F(QXSDKKovalinStickerDataProviderTest, RepeatsWhatIsInMemoryWithoutAChange)
{
    store(QStringLiteral("a"));
    provider->loadContentFromArchivedPacks();
    ASSERT_TRUE(reaches(State::ArchivedContent));
    provider->loadContentFromArchivedPacks();
    EXPECT_EQ(provider->state(), State::ArchivedContent);
    EXPECT_THAT(observer->told(), ElementsAre(QStringLiteral("loaded a in 4"), QStringLiteral("loaded a in 2")));
}

TEST_F(QXSDKKovalinStickerDataProviderTest, ReadsNoArchiveWhileLoadingOrLoggedOut)
{
    store(QStringLiteral("a"));
    provider->loadContentForLoggedInState();
    ASSERT_EQ(provider->state(), State::LoadingRemote);
    provider->loadContentFromArchivedPacks();
    EXPECT_EQ(provider->state(), State::LoadingRemote);
    provider->qxsdkLoginLinkDidFail();
    provider->loadContentFromArchivedPacks();
    EXPECT_EQ(provider->state(), State::LoggedOut);
    EXPECT_THAT(observer->told(), IsEmpty());
}

TEST_F(QXSDKKovalinStickerDataProviderTest, KeepsFreshPacksThatLandWhileTheArchiveIsRead)
{
    store(QStringLiteral("old"));
    provider->loadContentFromArchivedPacks();
    // The archive has perhaps been read by now; the fresh packs come through all the same, and stay.
    provider->loadContentForLoggedInState();
    answer({QStringLiteral("fresh")});
    drainArchive();
    settle();
    ASSERT_TRUE(provider->packs());
    EXPECT_EQ(provider->packs()->at(0)->packId(), QStringLiteral("fresh"));
    EXPECT_EQ(provider->state(), State::FreshContent);
}

TEST_F(QXSDKKovalinStickerDataProviderTest, RepeatsFreshPacksWhenTheArchiveComesAfterThem)
{
    store(QStringLiteral("old"));
    std::atomic<bool> hasBegun = false;
    std::atomic<bool> mayGoOn = false;
    archive->unarchivePacksWithCompletion([&hasBegun, &mayGoOn](const auto&) {
        hasBegun = true;
        while (!mayGoOn) { // holds the archive's queue up
            std::this_thread::yield();
        }
    });
    ASSERT_TRUE(waitFor([&hasBegun] { return hasBegun.load(); })); // it has taken the file by then
    store(QStringLiteral("old"));
    provider->loadContentFromArchivedPacks();
    provider->loadContentForLoggedInState();
    answer({QStringLiteral("fresh")});
    EXPECT_THAT(observer->told(), ElementsAre(QStringLiteral("loaded fresh in 5")));
    mayGoOn = true;
    drainArchive();
    settle();
    EXPECT_THAT(observer->told(),
                ElementsAre(QStringLiteral("loaded fresh in 5"), QStringLiteral("loaded fresh in 3")));
    EXPECT_EQ(provider->state(), State::FreshContent);
}

TEST_F(QXSDKKovalinStickerDataProviderTest, GoesBackToReadingTheArchiveSilentlyWhereAFetchBegunMeanwhileFails)
{
    store(QStringLiteral("old"));
    std::atomic<bool> hasBegun = false;
    std::atomic<bool> mayGoOn = false;
    archive->unarchivePacksWithCompletion([&hasBegun, &mayGoOn](const auto&) {
        hasBegun = true;
        while (!mayGoOn) { // holds the archive's queue up
            std::this_thread::yield();
        }
    });
    ASSERT_TRUE(waitFor([&hasBegun] { return hasBegun.load(); })); // it has taken the file by then
    store(QStringLiteral("old"));
    provider->loadContentFromArchivedPacks();
    provider->loadContentForLoggedInState();
    fail(500);
    EXPECT_EQ(provider->state(), State::LoadingArchive);
    EXPECT_THAT(observer->told(), IsEmpty());
    mayGoOn = true;
    drainArchive();
    settle();
    EXPECT_THAT(observer->told(), ElementsAre(QStringLiteral("loaded old in 4")));
    EXPECT_EQ(provider->state(), State::ArchivedContent);
}

TEST_F(QXSDKKovalinStickerDataProviderTest, StaysFreshWhereTheArchiveIsReadForFreshContentWithoutPacks)
{
    store(QStringLiteral("a"));
    provider->loadContentForLoggedInState();
    answer({QStringLiteral("b")});
    provider->setPacks(std::nullopt); // fresh, and without packs
    drainArchive();
    store(QStringLiteral("a"));
    archive = nullptr;
    provider->loadContentFromArchivedPacks();
    ASSERT_TRUE(reaches(State::FreshContent));
    EXPECT_TRUE(waitFor([this] { return observer->told().size() == 2; }));
}

// From the backend.

TEST_F(QXSDKKovalinStickerDataProviderTest, LoadsFreshPacksAndHandsThemToTheArchive)
{
    provider->loadContentForLoggedInState();
    EXPECT_EQ(provider->state(), State::LoadingRemote);
    EXPECT_THAT(observer->told(), IsEmpty());
    drainArchive();
    answer({QStringLiteral("popular"), QStringLiteral("b")});
    EXPECT_EQ(provider->state(), State::FreshContent);
    EXPECT_THAT(observer->told(), ElementsAre(QStringLiteral("loaded popular,b in 5")));
    resign();
    drainArchive();
    EXPECT_TRUE(archive->hasPacksToUnarchiveOnDisk());
    EXPECT_EQ(provider->state(), State::ArchivedContent);
}

TEST_F(QXSDKKovalinStickerDataProviderTest, SendsOneRequestAtATimeAndNoneWhilePacksAreFresh)
{
    provider->loadContentForLoggedInState();
    provider->loadContentForLoggedInState();
    EXPECT_EQ(login->requestCount(), 1U);
    answer({QStringLiteral("a")});
    provider->loadContentForLoggedInState();
    EXPECT_EQ(login->requestCount(), 1U);
    provider->willResignActive();
    provider->loadContentForLoggedInState();
    EXPECT_EQ(login->requestCount(), 2U);
}

TEST_F(QXSDKKovalinStickerDataProviderTest, SendsNoneWithoutAnAccount)
{
    provider->qxsdkLoginLinkDidFail();
    provider->loadContentForLoggedInState();
    EXPECT_EQ(login->requestCount(), 0U);
}

TEST_F(QXSDKKovalinStickerDataProviderTest, AsksAgainForFreshContentWithoutPacks)
{
    provider->loadContentForLoggedInState();
    answer({QStringLiteral("a")});
    provider->setPacks(std::nullopt);
    provider->loadContentForLoggedInState();
    EXPECT_EQ(login->requestCount(), 2U);
}

TEST_F(QXSDKKovalinStickerDataProviderTest, GoesBackWhereAFetchFailsAndKeepsThePacks)
{
    provider->loadContentForLoggedInState();
    fail(500);
    EXPECT_EQ(provider->state(), State::Uninitialized);
    EXPECT_THAT(observer->told(), ElementsAre(QStringLiteral("failed 500 in 5")));

    provider->loadContentForLoggedInState();
    answer({QStringLiteral("a")});
    provider->willResignActive();
    provider->loadContentForLoggedInState();
    fail(0);
    EXPECT_EQ(provider->state(), State::ArchivedContent);
    EXPECT_EQ(observer->told().back(), QStringLiteral("failed 0 in 5"));
    ASSERT_TRUE(provider->packs());
    EXPECT_EQ(provider->packs()->at(0)->packId(), QStringLiteral("a"));
}

TEST_F(QXSDKKovalinStickerDataProviderTest, TellsOfNothingForAUserWithoutContentAndClearsTheArchive)
{
    store(QStringLiteral("a"));
    provider->loadContentForLoggedInState();
    answerNoContent();
    EXPECT_EQ(provider->state(), State::NoContent);
    EXPECT_THAT(observer->told(), ElementsAre(QStringLiteral("loaded nothing in 5")));
    EXPECT_FALSE(provider->packs());
    EXPECT_TRUE(waitFor([this] { return !archive->hasPacksToUnarchiveOnDisk(); }));
}

TEST_F(QXSDKKovalinStickerDataProviderTest, IsLoggedOutWhereTheAccountIsGoneWhenTheAnswerComes)
{
    provider->loadContentForLoggedInState();
    login->isLinked = false;
    fail(500);
    EXPECT_EQ(provider->state(), State::LoggedOut);
    EXPECT_THAT(observer->told(), ElementsAre(QStringLiteral("failed 500 in 5")));
}

TEST_F(QXSDKKovalinStickerDataProviderTest, TakesNoPacksForALoggedOutUser)
{
    provider->loadContentForLoggedInState();
    login->isLinked = false;
    answer({QStringLiteral("a")});
    EXPECT_EQ(provider->state(), State::LoggedOut);
    EXPECT_THAT(observer->told(), ElementsAre(QStringLiteral("loaded nothing in 5")));
    EXPECT_FALSE(provider->packs());
}

TEST_F(QXSDKKovalinStickerDataProviderTest, TellsNobodyWhereTheStateIsTheSameAgain)
{
    provider->loadContentForLoggedInState();
    login->unlink();
    settle();
    ASSERT_EQ(provider->state(), State::LoggedOut);
    fail(500);
    EXPECT_THAT(observer->told(), IsEmpty());
}

// Events.

TEST_F(QXSDKKovalinStickerDataProviderTest, LeavesALoadUnderWayAloneWhenTheApplicationResigns)
{
    provider->loadContentForLoggedInState();
    resign();
    EXPECT_EQ(provider->state(), State::LoadingRemote);
}

TEST_F(QXSDKKovalinStickerDataProviderTest, ForgetsThePacksAtALogoutAndKeepsWhatTheFirstScreenShows)
{
    provider->loadContentForLoggedInState();
    answer({QStringLiteral("popular")});
    const auto popular = provider->popularKovalins();
    login->unlink();
    settle();
    EXPECT_EQ(provider->state(), State::LoggedOut);
    EXPECT_FALSE(provider->packs());
    EXPECT_EQ(provider->popularKovalins(), popular);
    EXPECT_EQ(provider->defaultTags(), QStringList{QStringLiteral("popular")});
    EXPECT_EQ(observer->told().size(), 1U) << "silently";
}

TEST_F(QXSDKKovalinStickerDataProviderTest, MayLoadAgainAfterALink)
{
    login->unlink();
    settle();
    login->link();
    settle();
    EXPECT_EQ(provider->state(), State::NoContent);
    provider->qxsdkLoginLinkDidFail();
    provider->setPacks(KovalinPackList{namedPack(QStringLiteral("a"), QStringLiteral("a"))});
    provider->qxsdkLoginLinkDidSucceed();
    EXPECT_EQ(provider->state(), State::ArchivedContent);
    provider->qxsdkLoginLinkDidSucceed();
    EXPECT_EQ(provider->state(), State::ArchivedContent) << "nothing to mend";
    EXPECT_THAT(observer->told(), IsEmpty());
}

// What follows from the packs.

TEST_F(QXSDKKovalinStickerDataProviderTest, KeepsThePopularStickersOfEarlierPacks)
{
    provider->setPacks(KovalinPackList{namedPack(QStringLiteral("popular"), QStringLiteral("Popular"))});
    const auto popular = provider->popularKovalins();
    ASSERT_TRUE(popular);
    provider->setPacks(KovalinPackList{namedPack(QStringLiteral("other"), QStringLiteral("Other"))});
    EXPECT_EQ(provider->popularKovalins(), popular);
    EXPECT_EQ(provider->defaultTags(), QStringList{QStringLiteral("Other")});
}

TEST_F(QXSDKKovalinStickerDataProviderTest, NamesTheVisiblePacksInOrderWithWhatRepeats)
{
    const auto nameless = std::make_shared<KovalinPack>();
    nameless->setVisible(true);
    provider->setPacks(KovalinPackList{namedPack(QStringLiteral("1"), QStringLiteral("b")),
                                       namedPack(QStringLiteral("2"), QStringLiteral("hidden"), false), nameless,
                                       namedPack(QStringLiteral("popular"), QStringLiteral("a")),
                                       namedPack(QStringLiteral("popular"), QStringLiteral("b"))});
    EXPECT_EQ(provider->defaultTags(), (QStringList{QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(provider->popularKovalins()->at(0)->url(), QStringLiteral("https://a.example/popular"));
}

// Lifetimes and threads.

TEST_F(QXSDKKovalinStickerDataProviderTest, HoldsObserversWeakly)
{
    provider->loadContentForLoggedInState();
    observer.reset();
    answer({QStringLiteral("a")});
    EXPECT_EQ(provider->state(), State::FreshContent);
}

TEST_F(QXSDKKovalinStickerDataProviderTest, MayGoWhileItIsLoading)
{
    store(QStringLiteral("a"));
    provider->loadContentFromArchivedPacks();
    provider->loadContentForLoggedInState();
    observer.reset();
    provider.reset();
    answer({QStringLiteral("b")});
    drainArchive();
}

TEST_F(QXSDKKovalinStickerDataProviderTest, SendsOneRequestHoweverManyThreadsAsk)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([this] {
            provider->loadContentFromArchivedPacks();
            provider->loadContentForLoggedInState();
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(login->requestCount(), 1U);
    answer({QStringLiteral("a")});
    EXPECT_EQ(provider->state(), State::FreshContent);
}

} // namespace
