#include "content/QXSDKKovalinClientRequiredScope.h"
#include "picker/config/KovalinString.h"
#include "picker/manager/ViewManagerTest.h"
#include "picker/status/QXSDKKovalinCreateAvatarView.h"
#include "picker/status/QXSDKKovalinErrorView.h"
#include "picker/status/QXSDKKovalinLoginView.h"
#include "picker/status/QXSDKKovalinNoPermissionView.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/ui/Label.h"

// Which view is chosen by which event.

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString failureLine = QStringLiteral("[ERROR] failed fetching Kovalin sticker packs");

class ViewDecisionTest : public ViewManagerTest {
protected:
    void expectTexts(const QString& titleKey, const QString& messageKey) const
    {
        ASSERT_EQ(currentType(), QXSDKKovalinViewTypeError);
        EXPECT_EQ(partOf<Label>(*current(), 0)->text(), kovalinStringWithKey(titleKey));
        EXPECT_EQ(partOf<Label>(*current(), 1)->text(), kovalinStringWithKey(messageKey));
    }
    void expectServerError() const
    {
        expectTexts(QStringLiteral("server_error_title"), QStringLiteral("server_error_message"));
    }
    void expectNetworkError() const
    {
        expectTexts(QStringLiteral("network_error_title"), QStringLiteral("network_error_message"));
    }
    /// The statuses of all permission updates.
    [[nodiscard]] std::vector<std::string> permissionUpdates() const
    {
        std::vector<std::string> statuses;
        for (const DecodedMessage& event : eventsNamed("kovalin_kit_permission_update")) {
            statuses.push_back(event.value("status").value_or("none"));
        }
        return statuses;
    }
    /// How many updates have begun since they wait.
    [[nodiscard]] std::size_t updates() const { return configs->waitingCount(); }
};

// An update

TEST_F(ViewDecisionTest, withAnAccountAnUpdateHasContentLoadedAndChangesNoView)
{
    update();
    EXPECT_EQ(login->requestCount(), 1U);
    EXPECT_EQ(provider->state(), QXSDKKovalinDataProviderState::LoadingRemote);
    EXPECT_EQ(current(), nullptr);
    EXPECT_THAT(observer->types, IsEmpty());
}

TEST_F(ViewDecisionTest, withoutAnAccountAnUpdateLeadsToTheLogin)
{
    login->isLinked = false;
    manager->update();
    EXPECT_EQ(current(), nullptr) << "in a later turn";
    settle();
    expectShown(QXSDKKovalinViewTypeLogin);
    EXPECT_TRUE(std::dynamic_pointer_cast<QXSDKKovalinLoginView>(current()));
    EXPECT_EQ(login->requestCount(), 0U);
}

TEST_F(ViewDecisionTest, withoutAnAccountAnUpdateReplacesAnyOtherView)
{
    showContent();
    showLogin();
    expectShown(QXSDKKovalinViewTypeLogin);
    tellFailure(500);
    update();
    expectShown(QXSDKKovalinViewTypeLogin);
    EXPECT_THAT(observer->types, ElementsAre(1, 3, 5, 3));
}

TEST_F(ViewDecisionTest, withoutAnAccountAnUpdateKeepsTheLoginView)
{
    showLogin();
    const auto view = current();
    update();
    EXPECT_EQ(current(), view);
    EXPECT_THAT(observer->types, ElementsAre(3));
}

// Content

TEST_F(ViewDecisionTest, contentIsShown)
{
    provider->setPacks(packs());
    manager->contentDidLoadWithPacks(packs());
    EXPECT_EQ(current(), nullptr) << "in a later turn, also on the main thread";
    settle();
    expectShown(QXSDKKovalinViewTypeContent);
    ASSERT_TRUE(manager->stickerView());
    EXPECT_EQ(comicIdsOf(*manager->stickerView()->kovalins()), QStringList{QStringLiteral("popular1")});
    EXPECT_EQ(textsOf(*stripOf(*manager->stickerView())), QStringList{QStringLiteral("Popular")});
}

TEST_F(ViewDecisionTest, noPacksInAListAreContentToo)
{
    tellContent(KovalinPackList());
    expectShown(QXSDKKovalinViewTypeContent);
}

TEST_F(ViewDecisionTest, contentTakesThePlaceOfAnyOtherView)
{
    tellFailure(500);
    tellContent(packs());
    tellContent(std::nullopt);
    tellContent(packs());
    showLogin();
    tellContent(packs());
    showNoPermission();
    tellContent(packs());
    expectShown(QXSDKKovalinViewTypeContent);
    EXPECT_THAT(observer->types, ElementsAre(5, 1, 2, 1, 3, 1, 4, 1));
}

TEST_F(ViewDecisionTest, aContentViewIsKept)
{
    showContent();
    const auto view = current();
    provider->setPacks(packs(QStringLiteral("other")));
    tellContent(packs(QStringLiteral("other")));
    EXPECT_EQ(current(), view);
    EXPECT_EQ(comicIdsOf(*manager->stickerView()->kovalins()), QStringList{QStringLiteral("popular1")}) << "as it is";
    EXPECT_THAT(observer->types, ElementsAre(1));
}

TEST_F(ViewDecisionTest, noContentLeadsToAvatarsWhateverWasCurrent)
{
    tellContent(std::nullopt);
    expectShown(QXSDKKovalinViewTypeCreateAvatar);
    EXPECT_TRUE(std::dynamic_pointer_cast<QXSDKKovalinCreateAvatarView>(current()));
    const auto first = current();
    tellContent(std::nullopt);
    expectShown(QXSDKKovalinViewTypeCreateAvatar);
    EXPECT_NE(current(), first) << "a new one";
    showContent();
    tellContent(std::nullopt);
    expectShown(QXSDKKovalinViewTypeCreateAvatar);
    EXPECT_EQ(manager->stickerView(), nullptr);
    EXPECT_THAT(observer->types, ElementsAre(2, 2, 1, 2));
}

TEST_F(ViewDecisionTest, showingContentUpdatesTheFriends)
{
    login->isLinked = false;
    friends->setFriendUserIds({QStringLiteral("a friend of this test's")}, 0);
    EXPECT_EQ(login->requestCount(), 0U);
    showContent();
    EXPECT_EQ(login->requestCount(), 1U) << "for the friend's avatar";
    tellContent(packs());
    EXPECT_EQ(login->requestCount(), 1U) << "once shown it is left alone";
}

// A failure

TEST_F(ViewDecisionTest, withoutThePermissionThatIsAskedFor)
{
    login->hasScope = false;
    manager->contentLoadDidFail(errorWithStatusCode(401, {}, {}));
    EXPECT_EQ(current(), nullptr) << "in a later turn, also on the main thread";
    settle();
    expectShown(QXSDKKovalinViewTypeNoPermission);
    EXPECT_TRUE(std::dynamic_pointer_cast<QXSDKKovalinNoPermissionView>(current()));
    EXPECT_EQ(login->lastScope(), kQXSDKKovalinClientRequiredScope());
}

TEST_F(ViewDecisionTest, withoutThePermissionStickersGo)
{
    showContent();
    const LogLines lines;
    showNoPermission();
    expectShown(QXSDKKovalinViewTypeNoPermission);
    EXPECT_EQ(LogLines::count(failureLine), 0);
    const auto first = current();
    tellFailure(401);
    EXPECT_NE(current(), first) << "a new one";
    EXPECT_THAT(observer->types, ElementsAre(1, 4, 4));
}

TEST_F(ViewDecisionTest, aFailureKeepsStickersAndIsLogged)
{
    showContent();
    const auto view = current();
    const LogLines lines;
    qsizetype logged = 0;
    for (const int code : {500, 0, -1, 401, 403}) {
        tellFailure(code);
        EXPECT_EQ(current(), view) << code;
        EXPECT_EQ(LogLines::count(failureLine), ++logged) << code;
    }
    EXPECT_THAT(observer->types, ElementsAre(1));
}

TEST_F(ViewDecisionTest, aFailureWithoutStickersIsShown)
{
    const LogLines lines;
    tellFailure(500);
    expectShown(QXSDKKovalinViewTypeError);
    EXPECT_TRUE(std::dynamic_pointer_cast<QXSDKKovalinErrorView>(current()));
    const auto first = current();
    tellFailure(500);
    EXPECT_NE(current(), first) << "a new one";
    showLogin();
    tellFailure(0);
    tellContent(std::nullopt);
    tellFailure(0);
    EXPECT_THAT(observer->types, ElementsAre(5, 5, 3, 5, 2, 5));
    EXPECT_EQ(LogLines::count(failureLine), 0);
}

TEST_F(ViewDecisionTest, aFailureWithoutANumberIsTheNetworks)
{
    tellFailure(0);
    expectNetworkError();
}

TEST_F(ViewDecisionTest, anyOtherFailureIsTheServers)
{
    for (const int code : {500, 404, 403, 1, -1, -1009}) {
        tellFailure(code);
        expectServerError();
    }
}

TEST_F(ViewDecisionTest, aRefusalInSpiteOfThePermissionIsTheServers)
{
    tellFailure(401);
    expectServerError();
}

TEST_F(ViewDecisionTest, otherRefusalsWithoutThePermissionAreTheServers)
{
    login->hasScope = false;
    tellFailure(403);
    expectServerError();
}

// A login

TEST_F(ViewDecisionTest, aLoginThatGrantsThePermissionIsLoggedAndLeadsToAnUpdate)
{
    showNoPermission();
    login->hasScope = true;
    configs->holds = true;
    manager->qxsdkLoginLinkDidSucceed();
    EXPECT_THAT(permissionUpdates(), ElementsAre("1"));
    EXPECT_EQ(login->lastScope(), kQXSDKKovalinClientRequiredScope());
    EXPECT_EQ(updates(), 1U);
    expectShown(QXSDKKovalinViewTypeNoPermission);
}

TEST_F(ViewDecisionTest, aLoginThatRefusesThePermissionIsLoggedAndLeadsToAnUpdate)
{
    showNoPermission();
    configs->holds = true;
    manager->qxsdkLoginLinkDidSucceed();
    EXPECT_THAT(permissionUpdates(), ElementsAre("2"));
    EXPECT_EQ(updates(), 1U);
}

TEST_F(ViewDecisionTest, aFailedLoginForThePermissionIsLogged)
{
    showNoPermission();
    configs->holds = true;
    login->failLink();
    settle();
    EXPECT_THAT(permissionUpdates(), ElementsAre("3"));
    EXPECT_EQ(updates(), 0U);
    expectShown(QXSDKKovalinViewTypeNoPermission);
}

TEST_F(ViewDecisionTest, anyOtherLoginIsNoneForThePermission)
{
    configs->holds = true;
    const auto expectNothing = [this] {
        manager->qxsdkLoginLinkDidSucceed();
        manager->qxsdkLoginLinkDidFail();
        EXPECT_THAT(events->events(), IsEmpty()) << currentType();
        EXPECT_EQ(updates(), 0U) << currentType();
    };
    expectNothing(); // no view is current
    tellContent(std::nullopt);
    expectNothing();
    tellFailure(500);
    expectNothing();
    showContent();
    expectNothing();
    configs->holds = false;
    showLogin();
    configs->holds = true;
    expectNothing();
}

TEST_F(ViewDecisionTest, aChangeOfTheLoginLeadsToAnUpdateWhateverIsShown)
{
    configs->holds = true;
    std::size_t expected = 0;
    const auto expectUpdate = [&] {
        NotificationCenter::qxsdkCenter().postNotificationName(kQXSDKLoginClientStateChangeNotification);
        EXPECT_EQ(updates(), ++expected) << currentType();
    };
    expectUpdate(); // no view is current
    tellContent(std::nullopt);
    expectUpdate();
    showContent();
    expectUpdate();
    showNoPermission();
    expectUpdate();
}

} // namespace
