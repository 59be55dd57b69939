#include "kits/login/ui/QXSDKLoginButton.h"

#include "kits/login/ui/LoginButtonTitle.h"
#include "support/QtPrinting.h"
#include "support/RecordingLoginClient.h"
#include "support/ViewTest.h"

#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

using namespace kovalin::platform;
using kovalin::test::drainMainQueue;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class RecordingDelegate final : public QXSDKLoginButtonDelegate {
public:
    explicit RecordingDelegate(std::vector<std::string>& told)
        : _told(told)
    {
    }
    void loginButtonDidTap() override
    {
        _told.emplace_back("tap");
        if (then) {
            then();
        }
    }

    std::function<void()> then;

private:
    std::vector<std::string>& _told;
};

class QXSDKLoginButtonTest : public kovalin::test::ViewTest {
protected:
    QXSDKLoginButtonTest()
    {
        login->onLogin = [this] {
            told.emplace_back("login");
        };
        make({});
    }

    void make(QXSDKLoginClient::LoginCompletion completion)
    {
        if (button) {
            button->removeFromSuperview();
        }
        button = makeView<QXSDKLoginButton>(std::move(completion));
        button->setDelegate(delegate);
        button->sizeToFit();
        root()->addSubview(button);
        grab();
    }
    void tapButton() { tap(button->frame().center()); }

    kovalin::test::InstalledRecordingLogin login;
    std::vector<std::string> told;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>(told);
    std::shared_ptr<QXSDKLoginButton> button;
};

TEST_F(QXSDKLoginButtonTest, aTapIsToldAndStartsTheLogin)
{
    tapButton();
    EXPECT_THAT(told, ElementsAre("tap", "login"));
    ASSERT_EQ(login->logins.size(), 1U);
    EXPECT_EQ(login->logins.front().viewController.data(), &window());
    EXPECT_FALSE(login->logins.front().completion);
}

TEST_F(QXSDKLoginButtonTest, keysAndAssistiveToolsTapIt)
{
    QTest::keyClick(&window(), Qt::Key_Tab);
    QTest::keyClick(&window(), Qt::Key_Space);
    button->press();
    EXPECT_THAT(told, ElementsAre("tap", "login", "tap", "login"));
}

TEST_F(QXSDKLoginButtonTest, aPressThatEndsElsewhereDoesNothing)
{
    press(button->frame().center());
    move({100, 150});
    release({100, 150});
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(QXSDKLoginButtonTest, theCompletionIsTheLogins)
{
    int completions = 0;
    make([&](const std::optional<QXSDKError>&) { ++completions; });
    tapButton();
    ASSERT_EQ(login->logins.size(), 1U);
    login->logins.front().completion(std::nullopt);
    EXPECT_EQ(completions, 1);
}

TEST_F(QXSDKLoginButtonTest, doesWithoutADelegate)
{
    delegate.reset();
    tapButton();
    EXPECT_THAT(told, ElementsAre("login"));
}

TEST_F(QXSDKLoginButtonTest, theLoginStartsThoughTheDelegateLetsGoOfTheButton)
{
    const std::weak_ptr<QXSDKLoginButton> gone = button;
    delegate->then = [this] {
        button->removeFromSuperview();
        button.reset();
    };
    tapButton();
    EXPECT_THAT(told, ElementsAre("tap", "login"));
    drainMainQueue();
    EXPECT_TRUE(gone.expired());
}

TEST_F(QXSDKLoginButtonTest, isAPillOfItsNaturalSize)
{
    EXPECT_EQ(button->frame().size(), QSizeF(200, 48));
    EXPECT_EQ(button->layerStyle().cornerRadius, 24);
    EXPECT_EQ(button->title(), QStringLiteral("Log in"));
}

TEST_F(QXSDKLoginButtonTest, aLongTitleMakesItWider)
{
    button->setTitle(QString(40, u'M'));
    button->sizeToFit();
    EXPECT_GT(button->frame().width(), 300);
    EXPECT_EQ(button->frame().height(), 48);
}

TEST_F(QXSDKLoginButtonTest, isLabelledInTheLanguageThatItIsGiven)
{
    const auto titleIn = [](const char* language) {
        return makeView<QXSDKLoginButton>(QXSDKLoginClient::LoginCompletion(), QString::fromLatin1(language))->title();
    };
    EXPECT_EQ(titleIn("de"), QStringLiteral("Anmelden"));
    EXPECT_EQ(titleIn("zh-Hant"), QStringLiteral("登入"));
    EXPECT_EQ(titleIn("is"), QStringLiteral("Log in")) << "for want of texts";
    EXPECT_EQ(titleIn(""), QStringLiteral("Log in"));
    EXPECT_EQ(kovalin::kits::loginButtonLanguages().size(), 12);
}

} // namespace
