// What stands in place of the stickers, and the icon beside the host's text field, over the development server's accounts.
#include "end_to_end/ContentHost.h"
#include "kits/core/QXSDKClientSetup.h"
#include "picker/config/KovalinString.h"
#include "picker/icon/QXSDKKovalinIconView.h"
#include "picker/status/QXSDKKovalinCreateAvatarView.h"
#include "picker/status/QXSDKKovalinErrorView.h"
#include "picker/status/QXSDKKovalinLoginView.h"
#include "picker/status/QXSDKKovalinNoPermissionView.h"
#include "platform/ui/Button.h"
#include "platform/ui/ImageView.h"
#include "support/PartOf.h"
#include "support/RecordingURLOpener.h"
#include "support/ViewWindow.h"
#include "support/WaitFor.h"

#include <string>
#include <vector>

namespace kovalin::test {
namespace {

using namespace platform;
using backend::AnswerRule;

class AccountViews : public ContentHost {
protected:
    void show(const std::shared_ptr<View>& view)
    {
        window.root()->addSubview(view);
        window.grab();
    }
    void tap(const View& button) { window.tap(button.frame().center()); }
    [[nodiscard]] static QImage pictureOf(const QXSDKKovalinIconView& icon)
    {
        return partOf<ImageView>(icon, 0)->image();
    }
    [[nodiscard]] static bool showsDefault(const QXSDKKovalinIconView& icon)
    {
        return pictureOf(icon).cacheKey() == icon.defaultImage().cacheKey();
    }

    ViewWindow window{{400, 400}};
};

TEST_F(AccountViews, TheLoginButtonLinksTheAccount)
{
    const auto view = QXSDKKovalinLoginView::create({0, 0, 400, 400}, nullptr);
    show(view);
    tap(*partOf<Button>(*view, 0));
    ASSERT_TRUE(waitFor([this] { return login->isUserLoggedIn(); }));
}

TEST_F(AccountViews, TheNoPermissionViewIsBackAfterALoginThatIsDeclined)
{
    answer("/accounts/oauth2/authorize", AnswerRule::withQuery("auto=deny"));
    const auto view = QXSDKKovalinNoPermissionView::create({0, 0, 400, 400}, nullptr);
    show(view);
    const auto button = partOf<Button>(*view, 1);
    const auto spinner = partOf<View>(*view, 2);
    tap(*button);
    ASSERT_TRUE(waitFor([&] { return !button->isEnabled() && !spinner->isHidden(); }));
    ASSERT_TRUE(waitFor([&] { return button->isEnabled() && spinner->isHidden(); }));
    EXPECT_FALSE(login->isUserLoggedIn());
}

TEST_F(AccountViews, TheCreateAvatarViewLeadsToTheStore)
{
    const InstalledURLOpener opener;
    auto setup = *QXSDKClientSetup::shared();
    setup.avatarAppStoreUrl = QStringLiteral("itms-apps://store.example/app/id1");
    QXSDKClientSetup::setShared(setup);
    const auto view = makeView<QXSDKKovalinCreateAvatarView>(QRectF(0, 0, 400, 400), nullptr);
    show(view);
    tap(*partOf<Button>(*view, 2));
    EXPECT_EQ(opener->told, std::vector<std::string>{"open itms-apps://store.example/app/id1"});
}

TEST_F(AccountViews, TheErrorViewLoadsAgain)
{
    logIn();
    answer("/api/graphql#packs", AnswerRule::withStatus(500));
    ASSERT_EQ(failToLoad(), 500);
    const auto view = makeView<QXSDKKovalinErrorView>(
        kovalinStringWithKey(QStringLiteral("server_error_title")),
        kovalinStringWithKey(QStringLiteral("server_error_message")),
        [this] { provider->loadContentForLoggedInState(); }, nullptr);
    view->setFrame({0, 0, 400, 400});
    show(view);
    answer("/api/graphql#packs", AnswerRule{});
    tap(*partOf<Button>(*view, 2));
    EXPECT_FALSE(partOf<View>(*view, 3)->isHidden()) << "the spinner";
    EXPECT_TRUE(waitFor([this] { return provider->state() == State::FreshContent; }));
}

TEST_F(AccountViews, TheIconShowsTheAvatarOfWhoLogsInAndTheStickerThatIsFound)
{
    const auto icon = QXSDKKovalinIconView::create(pictures);
    icon->setFrame({0, 0, 40, 40});
    show(icon);
    EXPECT_TRUE(showsDefault(*icon));
    logIn();
    ASSERT_TRUE(waitFor([&] { return !showsDefault(*icon); }));
    const QImage avatar = pictureOf(*icon);
    EXPECT_GE(requestsFor("/avatars/"), 1);

    load();
    friends->setFriendUserIds({QStringLiteral("user-1")}, 0);
    ASSERT_TRUE(waitFor([&] { return friends->friendAvatarId().has_value(); }));
    bool isChanged = false;
    icon->updateWithKovalinSticker(firstSticker(true), *friends, [&](bool changed) { isChanged = changed; });
    EXPECT_TRUE(isChanged);
    ASSERT_TRUE(waitFor([&] { return pictureOf(*icon).cacheKey() != avatar.cacheKey(); }));
    EXPECT_EQ(pictureOf(*icon).size(), QSize(320, 320));

    icon->updateWithKovalinSticker(nullptr, *friends, [](bool) {});
    ASSERT_TRUE(waitFor([&] { return pictureOf(*icon) == avatar; }));
    login->unlink();
    ASSERT_TRUE(waitFor([&] { return showsDefault(*icon); }));
}

} // namespace
} // namespace kovalin::test
