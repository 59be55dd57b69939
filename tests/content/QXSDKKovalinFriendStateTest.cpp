#include "content/QXSDKKovalinFriendState.h"

#include "content/QXSDKKovalinFriendCache.h"
#include "support/QtPrinting.h"
#include "support/ScriptedLoginClient.h"
#include "support/WaitFor.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <QtCore/QJsonArray>
#include <QtCore/QUuid>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Told {
    std::optional<QString> friendAvatarId;
    QStringList otherAvatarIds;

    friend bool operator==(const Told&, const Told&) = default;
};

void PrintTo(const Told& told, std::ostream* stream)
{
    *stream << told.friendAvatarId.value_or(QStringLiteral("(nobody)")).toStdString() << " and "
            << told.otherAvatarIds.join(u',').toStdString();
}

class Observer final : public QXSDKKovalinFriendAvatarObserver {
public:
    void kovalinFriendAvatarDidChange(const std::optional<QString>& friendAvatarId,
                                      const QStringList& otherAvatarIds) override
    {
        told.push_back({friendAvatarId, otherAvatarIds});
    }
    std::vector<Told> told;
};

const Told nobody{};

class QXSDKKovalinFriendStateTest : public testing::Test {
protected:
    QXSDKKovalinFriendStateTest() { state->addFriendAvatarObserver(observer); }

    /// A user whom no other test knows: the cache is the process's.
    static QString user() { return QUuid::createUuid().toString(); }

    static void know(const QString& user, const std::optional<QString>& avatar)
    {
        QXSDKKovalinFriendCache::shared()->updateWithData({{user, avatar}});
    }
    /// Answers a request with the users' avatars; an absent one stands for a user without an avatar.
    void answer(std::size_t request, const QXSDKKovalinAvatarIds& avatars)
    {
        QJsonArray users;
        for (auto entry = avatars.cbegin(); entry != avatars.cend(); ++entry) {
            QJsonObject kovalin;
            if (entry.value()) {
                kovalin.insert(QStringLiteral("id"), *entry.value());
            }
            users.append(
                QJsonObject{{QStringLiteral("externalId"), entry.key()}, {QStringLiteral("kovalin"), kovalin}});
        }
        login->request(request).success({{QStringLiteral("data"), QJsonObject{{QStringLiteral("users"), users}}}});
        drainMainQueue();
        drainMainQueue();
    }
    /// A session that begins and ends.
    void session()
    {
        sessions.didBecomeActive();
        sessions.willResignActive();
    }

    InstalledLoginClient login;
    QXSDKKovalinStickerPickerSessionManager sessions;
    std::shared_ptr<QXSDKKovalinFriendState> state = QXSDKKovalinFriendState::create(sessions);
    std::shared_ptr<Observer> observer = std::make_shared<Observer>();
    const QString a = user();
    const QString b = user();
    const QString c = user();
};

TEST_F(QXSDKKovalinFriendStateTest, TellsNobodyForAnEmptyListAndSendsNothing)
{
    state->setFriendUserIds({}, 0);
    EXPECT_THAT(observer->told, ElementsAre(nobody));
    EXPECT_EQ(login->requestCount(), 0U);
}

TEST_F(QXSDKKovalinFriendStateTest, TellsNobodyFirstAndTheFriendOnceTheAnswerIsThere)
{
    state->setFriendUserIds({a, b}, 0);
    EXPECT_THAT(observer->told, ElementsAre(nobody));
    ASSERT_EQ(login->requestCount(), 1U);
    EXPECT_EQ(login->request(0).variables->value(QStringLiteral("externalIds")).toArray(),
              QJsonArray::fromStringList({a, b}));
    answer(0, {{a, QStringLiteral("A")}, {b, QStringLiteral("B")}});
    EXPECT_THAT(observer->told, ElementsAre(nobody, Told{QStringLiteral("A"), {QStringLiteral("B")}}));
    EXPECT_EQ(state->friendAvatarId(), QStringLiteral("A"));
}

TEST_F(QXSDKKovalinFriendStateTest, ServesFromMemoryAndRefreshesOnceASession)
{
    know(a, QStringLiteral("A"));
    state->setFriendUserIds({a}, 0);
    EXPECT_THAT(observer->told, ElementsAre(Told{QStringLiteral("A"), {}}));
    ASSERT_EQ(login->requestCount(), 1U) << "the first update of a session asks";
    answer(0, {{a, QStringLiteral("new")}});
    EXPECT_EQ(observer->told.back(), (Told{QStringLiteral("new"), {}}));

    state->update();
    EXPECT_EQ(observer->told.size(), 3U) << "told though nothing has changed";
    EXPECT_EQ(login->requestCount(), 1U) << "all is known, and the session goes on";

    session();
    state->update();
    EXPECT_EQ(login->requestCount(), 2U);
}

TEST_F(QXSDKKovalinFriendStateTest, AsksAgainWhileAnyUserIsUnknown)
{
    know(a, QStringLiteral("A"));
    state->setFriendUserIds({a, b}, 0);
    answer(0, {{a, QStringLiteral("A")}});
    state->update();
    EXPECT_EQ(login->requestCount(), 2U) << "the backend doesn't know the other";
}

TEST_F(QXSDKKovalinFriendStateTest, LetsTheFirstOtherFriendTakeThePlaceOfOneWithoutAnAvatar)
{
    know(a, std::nullopt);
    know(b, QStringLiteral("B"));
    know(c, QStringLiteral("C"));
    state->setFriendUserIds({b, a, c}, 1);
    EXPECT_EQ(observer->told.front(), (Told{QStringLiteral("B"), {QStringLiteral("C")}}));
}

TEST_F(QXSDKKovalinFriendStateTest, TellsNobodyWhereNobodyHasAnAvatar)
{
    know(a, std::nullopt);
    know(b, QStringLiteral(""));
    state->setFriendUserIds({a, b}, 0);
    EXPECT_EQ(observer->told.front(), nobody);
}

TEST_F(QXSDKKovalinFriendStateTest, SkipsTheSelectedFriendsDuplicatesAndKeepsThoseOfOthers)
{
    know(a, QStringLiteral("A"));
    know(b, QStringLiteral("B"));
    state->setFriendUserIds({b, a, a, b}, 1);
    EXPECT_EQ(observer->told.front(), (Told{QStringLiteral("A"), {QStringLiteral("B"), QStringLiteral("B")}}));
}

TEST_F(QXSDKKovalinFriendStateTest, RemembersTheAnswerOfAnOlderRequestAndTellsNobodyOfIt)
{
    state->setFriendUserIds({a}, 0);
    state->setFriendUserIds({b}, 0);
    ASSERT_EQ(login->requestCount(), 2U);
    const auto before = observer->told.size();
    answer(0, {{a, QStringLiteral("A")}});
    EXPECT_EQ(observer->told.size(), before);
    EXPECT_EQ(QXSDKKovalinFriendCache::shared()->avatarIdForUser(a), QStringLiteral("A"));
    answer(1, {{b, QStringLiteral("B")}});
    EXPECT_EQ(observer->told.back(), (Told{QStringLiteral("B"), {}}));
}

TEST_F(QXSDKKovalinFriendStateTest, ChangesNothingWhenARequestFailsAndAsksAgainNextSession)
{
    know(a, QStringLiteral("A"));
    state->setFriendUserIds({a}, 0);
    const auto before = observer->told.size();
    login->request(0).failure(errorWithStatusCode(500, {}, {}), false);
    drainMainQueue();
    drainMainQueue();
    EXPECT_EQ(observer->told.size(), before);
    EXPECT_EQ(state->friendAvatarId(), QStringLiteral("A"));
    state->update();
    EXPECT_EQ(login->requestCount(), 1U) << "not repeated in the same session";
    session();
    state->update();
    EXPECT_EQ(login->requestCount(), 2U);
}

TEST_F(QXSDKKovalinFriendStateTest, SelectsNobodyOutsideOfTheListAndSendsNothing)
{
    for (const qint64 index : {qint64(-1), qint64(2), std::numeric_limits<qint64>::max()}) {
        state->setFriendUserIds({a, b}, index);
        EXPECT_EQ(observer->told.back(), nobody);
    }
    EXPECT_EQ(login->requestCount(), 0U);
}

TEST_F(QXSDKKovalinFriendStateTest, WaitsForAnAccount)
{
    login->isLinked = false;
    state->setFriendUserIds({a}, 0);
    EXPECT_THAT(observer->told, IsEmpty());
    EXPECT_EQ(login->requestCount(), 0U);
    state->update();
    EXPECT_EQ(login->requestCount(), 1U) << "whoever updates knows better";
}

TEST_F(QXSDKKovalinFriendStateTest, ClearsWhatIsToldAndKeepsTheFriends)
{
    know(a, QStringLiteral("A"));
    state->setFriendUserIds({a}, 0);
    state->clear();
    EXPECT_EQ(observer->told.back(), nobody);
    EXPECT_FALSE(state->friendAvatarId());
    state->update();
    EXPECT_EQ(observer->told.back(), (Told{QStringLiteral("A"), {}}));
}

TEST_F(QXSDKKovalinFriendStateTest, HoldsObserversWeaklyAndLetsThemLeave)
{
    auto dying = std::make_shared<Observer>();
    state->addFriendAvatarObserver(dying);
    dying.reset();
    state->clear();
    state->removeFriendAvatarObserver(observer);
    state->clear();
    EXPECT_EQ(observer->told.size(), 1U);
}

TEST_F(QXSDKKovalinFriendStateTest, MayGoWhileARequestIsUnderWay)
{
    state->setFriendUserIds({a}, 0);
    state.reset();
    answer(0, {{a, QStringLiteral("A")}});
    EXPECT_THAT(observer->told, ElementsAre(nobody));
    EXPECT_FALSE(QXSDKKovalinFriendCache::shared()->hasEntryForUser(a)) << "the answer goes with its asker";
}

} // namespace
