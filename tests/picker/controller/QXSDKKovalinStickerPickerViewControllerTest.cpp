#include "picker/controller/QXSDKKovalinStickerPickerViewController.h"

#include "content/QXSDKKovalinFriendCache.h"
#include "content/QXSDKKovalinFriendState.h"
#include "kits/core/QXSDKTweaks.h"
#include "picker/config/QXSDKKovalinStickerPickerConfigBuilder.h"
#include "picker/controller/ControllerTest.h"
#include "platform/foundation/Clock.h"
#include "platform/foundation/Color.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <gmock/gmock.h>

#include <thread>

// How a picker is made, what a host tells it, and where its views stand.

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class QXSDKKovalinStickerPickerViewControllerTest : public ControllerTest {
protected:
    [[nodiscard]] std::shared_ptr<View> topBorder() const { return container().subviews().value(0); }
    [[nodiscard]] qint32 currentType() const
    {
        return QXSDKKovalinViewProtocol::typeOf(picker.viewManager->currentView());
    }
};

// Making

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, keepsTheConfigurationThatItIsGiven)
{
    const auto config = QXSDKKovalinStickerPickerConfigBuilder().withShowSearchBar(false).build();
    makePicker(config);
    EXPECT_EQ(picker.config, config);
    EXPECT_EQ(picker.viewManager->config(), config);
    makePicker(nullptr);
    ASSERT_TRUE(picker.config);
    EXPECT_EQ(picker.viewManager->config(), picker.config);
    EXPECT_TRUE(picker.config->showSearchBar());
    EXPECT_TRUE(picker.config->showSearchPills());
    EXPECT_TRUE(
        colorsEqual(picker.config->theme()->titleTextColor(), QXSDKKovalinStickerPickerTheme().titleTextColor()));
}

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, offersItsViewOnceForTheDevelopersGesture)
{
    std::vector<QObject*> views;
    setTweaksGesture([&views](QObject& view) {
        views.push_back(&view);
        setTweaksGesture({});
    });
    const QQuickItem* const view = controller->view();
    EXPECT_THAT(views, ElementsAre(view));
    EXPECT_EQ(configs->updates, 2) << "loading has begun";
    EXPECT_EQ(controller->view(), view);
    makePicker(nullptr);
    static_cast<void>(controller->view());
    EXPECT_EQ(views.size(), 1U) << "none is set any more";
}

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, doesNothingBeforeItsViewIsAskedFor)
{
    settle();
    EXPECT_THAT(eventNumbers(), IsEmpty());
    EXPECT_EQ(configs->updates, 0);
    EXPECT_EQ(login->requestCount(), 0U);
    EXPECT_EQ(picker.logger->coldStartTime(), 0);
    controller->viewWillAppear();
    controller->viewWillDisappear();
    EXPECT_FALSE(picker.sessionManager->sessionId());
}

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, hasOneViewForItsLife)
{
    QQuickItem* const view = controller->view();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(controller->view(), view);
    EXPECT_EQ(view->objectName(), QStringLiteral("qxsdk_kovalin_container"));
    EXPECT_EQ(view->parentItem(), nullptr);
    EXPECT_EQ(view->parent(), nullptr);
    EXPECT_TRUE(view->clip());
    settle();
    EXPECT_EQ(controller->view(), view);
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent));
}

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, takesItsColoursFromTheTheme)
{
    for (const auto& theme :
         {QXSDKKovalinStickerPickerTheme::lightTheme(), QXSDKKovalinStickerPickerTheme::darkTheme()}) {
        makePicker(QXSDKKovalinStickerPickerConfigBuilder().withTheme(theme).build());
        EXPECT_TRUE(colorsEqual(container().backgroundColor(), theme->backgroundColor()));
        EXPECT_TRUE(colorsEqual(topBorder()->backgroundColor(), theme->borderColor()));
    }
}

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, notesItsStartAndLoadsWhenItsViewIsAskedFor)
{
    clock.advance(std::chrono::milliseconds(1500));
    (void)controller->view();
    EXPECT_EQ(picker.logger->coldStartTime(), currentTimeSeconds());
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent));
    EXPECT_EQ(configs->updates, 2) << "for the archived packs, and for the account's";
    EXPECT_EQ(login->requestCount(), 1U);
    clock.advance(std::chrono::milliseconds(1000));
    (void)controller->view();
    EXPECT_EQ(picker.logger->coldStartTime(), currentTimeSeconds() - 1);
    EXPECT_EQ(configs->updates, 2);
}

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, beginsWithTheLoginWithoutAnAccount)
{
    login->isLinked = false;
    open();
    EXPECT_EQ(currentType(), QXSDKKovalinViewTypeLogin);
    EXPECT_EQ(currentView()->superview().get(), &container());
    EXPECT_EQ(currentView()->frame(), QRectF(0, 0, width, height));
}

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, isMadeOfTheProcesssObjectsForHosts)
{
    login->isLinked = false;
    const auto forHost = Controller::create();
    const auto another =
        Controller::create(QXSDKKovalinStickerPickerConfigBuilder().withShowSearchPills(false).build());
    forHost->view()->setParentItem(host.get());
    forHost->view()->setSize({width, height});
    forHost->viewWillAppear();
    settle();
    ASSERT_EQ(another->view()->childItems().size(), 1) << "the border";
    EXPECT_EQ(forHost->view()->childItems().size(), 2) << "and the login view";
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent, OpenEvent, MountEvent));
}

TEST(QXSDKKovalinStickerPickerViewController, stopsOnAnotherThread)
{
    EXPECT_DEATH(std::thread([] { (void)QXSDKKovalinStickerPickerViewController::create(); }).join(), "create");
}

// Layout

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, theCurrentViewFillsThePickerAndTheBorderItsTop)
{
    embed();
    showView(picker, QXSDKKovalinViewTypeError);
    EXPECT_EQ(currentView()->frame(), QRectF(0, 0, width, height)) << "at once";
    EXPECT_EQ(topBorder()->frame(), QRectF(0, 0, width, 0.5));
    controller->view()->setPosition({10, 20});
    controller->view()->setSize({200, 150});
    grab();
    EXPECT_EQ(currentView()->frame(), QRectF(0, 0, 200, 150));
    EXPECT_EQ(topBorder()->frame(), QRectF(0, 0, 200, 0.5));
    controller->view()->setSize({0, 0});
    grab();
    EXPECT_EQ(currentView()->frame(), QRectF());
}

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, theBorderLiesAboveEveryView)
{
    const auto theme = std::make_shared<QXSDKKovalinStickerPickerTheme>();
    theme->setBorderColor(Qt::red);
    makePicker(QXSDKKovalinStickerPickerConfigBuilder().withTheme(theme).build());
    embed();
    for (const auto type : {QXSDKKovalinViewTypeContent, QXSDKKovalinViewTypeLogin}) {
        showView(picker, type);
        currentView()->setBackgroundColor(Qt::blue);
        settleViews();
        EXPECT_EQ(topBorder()->z(), 100);
        EXPECT_LT(currentView()->z(), 100);
        // A device pixel at a ratio of 2, and half of one at 1.
        EXPECT_EQ(colorAt({100, 0}).red(), ratio() < 2 ? 127 : 255);
        EXPECT_EQ(colorAt({100, 1}), QColor(Qt::blue));
    }
}

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, safeAreasReachTheCurrentView)
{
    controller->setSafeAreaInsets({1, 2, 3, 4});
    embed();
    showView(picker, QXSDKKovalinViewTypeError);
    EXPECT_EQ(currentView()->safeAreaInsets(), QMarginsF(1, 2, 3, 4));
    controller->setSafeAreaInsets({0, 0, 0, 34});
    EXPECT_EQ(currentView()->safeAreaInsets(), QMarginsF(0, 0, 0, 34));
}

// The friend

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, theFriendIsOneOrNone)
{
    QXSDKKovalinFriendCache::shared()->updateWithData({{QStringLiteral("the friend"), QStringLiteral("avatar")}});
    for (const auto& none : {std::optional<QString>(), std::optional<QString>(QStringLiteral(""))}) {
        controller->setFriendUserId(QStringLiteral("the friend"));
        EXPECT_EQ(picker.friendState->friendAvatarId(), QStringLiteral("avatar"));
        const std::size_t requests = login->requestCount();
        controller->setFriendUserId(none);
        EXPECT_EQ(picker.friendState->friendAvatarId(), std::nullopt);
        EXPECT_EQ(login->requestCount(), requests) << "nobody is asked for";
    }
}

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, anUnknownFriendIsAskedForByTheIdAlone)
{
    controller->setFriendUserId(QStringLiteral("somebody new"));
    ASSERT_EQ(login->requestCount(), 1U);
    const auto request = login->request(0);
    ASSERT_TRUE(request.variables);
    const QJsonObject variables = *request.variables;
    ASSERT_EQ(variables.size(), 1);
    EXPECT_EQ(variables.begin().value().toArray(), QJsonArray{QStringLiteral("somebody new")});
}

// Searches

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, aTermOfTheHostsIsKeptForTheContent)
{
    controller->setSearchTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeReplace);
    openWithContent();
    EXPECT_EQ(engine->searchedTexts().value(0), QStringLiteral("happy"));
    EXPECT_FALSE(engine->searchedTexts().contains(QStringLiteral("smile")));
    controller->setSearchTerm(QStringLiteral("smile"), QXSDKKovalinSearchModeBlend);
    EXPECT_EQ(engine->searchedTexts().last(), QStringLiteral("smile"));
}

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, anAbsentTermIsAnEmptyOne)
{
    openWithContent();
    for (const auto& none : {std::optional<QString>(), std::optional<QString>(QStringLiteral(""))}) {
        controller->setSearchTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeReplace);
        EXPECT_EQ(barOf(*content())->text(), QStringLiteral("happy"));
        const qsizetype searches = engine->searchedTexts().size();
        controller->setSearchTerm(none, QXSDKKovalinSearchModeReplace);
        EXPECT_EQ(barOf(*content())->text(), QString());
        EXPECT_EQ(engine->searchedTexts().size(), searches);
    }
}

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, attachedIconsShowWhatIsFound)
{
    const auto attached = icon(nullptr);
    const auto removed = icon(nullptr);
    controller->attachKovalinIcon(attached);
    controller->attachKovalinIcon(removed);
    controller->attachKovalinIcon(nullptr);
    EXPECT_EQ(picker.viewManager->kovalinIcons().count(), 2);
    controller->removeKovalinIcon(removed);
    controller->removeKovalinIcon(nullptr);
    openWithContent();
    controller->setSearchTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeReplace);
    const auto found = sticker(QStringLiteral("found"));
    engine->answer(0, {found}, {});
    settle();
    EXPECT_EQ(attached->sticker(), found);
    EXPECT_EQ(removed->sticker(), nullptr);
}

TEST_F(QXSDKKovalinStickerPickerViewControllerTest, iconsAreHeldWeakly)
{
    controller->attachKovalinIcon(icon(nullptr));
    EXPECT_TRUE(picker.viewManager->kovalinIcons().isEmpty());
}

} // namespace
