#include "qml/KovalinClient.h"

#include "kits/login/QXSDKLoginClient.h"
#include "platform/foundation/Color.h"
#include "qml/KovalinTheme.h"
#include "qml/QmlHost.h"
#include "support/RecordingLoginClient.h"
#include "support/ScriptedLoginClient.h"

#include <gmock/gmock.h>

using namespace kovalin::test;
using kovalin::platform::colorsEqual;

namespace {

class KovalinClientTest : public QmlHost {
protected:
    ~KovalinClientTest() override { QXSDKClientSetup::setShared({}); }
};

TEST_F(KovalinClientTest, setsUpTheProcess)
{
    load(R"(QtObject {
        property int changes: 0
        property Connections connections: Connections {
            target: KovalinClient
            function onSetupChanged() { changes += 1 }
        }
        property string read: KovalinClient.clientId
        Component.onCompleted: {
            KovalinClient.clientId = "a-host"
            KovalinClient.clientId = "a-host"
            KovalinClient.contentBaseUrl = "https://content.example"
            KovalinClient.authenticationBaseUrl = "https://accounts.example"
            KovalinClient.apiBaseUrl = "https://api.example"
            KovalinClient.avatarAppStoreUrl = "itms-apps://store.example/app/id1"
            KovalinClient.isAnalyticsEnabled = false
        }
    })");
    const auto setup = QXSDKClientSetup::shared();
    EXPECT_EQ(setup->clientId, QStringLiteral("a-host"));
    EXPECT_EQ(setup->contentBaseUrl, QStringLiteral("https://content.example"));
    EXPECT_EQ(setup->authenticationBaseUrl, QStringLiteral("https://accounts.example"));
    EXPECT_EQ(setup->apiBaseUrl, QStringLiteral("https://api.example"));
    EXPECT_EQ(setup->avatarAppStoreUrl, QStringLiteral("itms-apps://store.example/app/id1"));
    EXPECT_FALSE(setup->isAnalyticsEnabled);
    EXPECT_EQ(root->property("changes"), 6);
    EXPECT_EQ(root->property("read"), QStringLiteral("a-host"));
}

TEST_F(KovalinClientTest, hasViewsMoveAsLittleAsTheyCan)
{
    load(R"(QtObject {
        property int changes: 0
        property Connections connections: Connections {
            target: KovalinClient
            function onMotionChanged() { changes += 1 }
        }
        property bool wasReduced: KovalinClient.isMotionReduced
        Component.onCompleted: { KovalinClient.isMotionReduced = true; KovalinClient.isMotionReduced = true }
    })");
    EXPECT_TRUE(QXSDKKovalinIsMotionReduced());
    EXPECT_EQ(root->property("changes"), 1);
    QXSDKKovalinSetReducedMotion(false);
}

TEST_F(KovalinClientTest, tellsOfLoginsAndLogouts)
{
    const InstalledLoginClient login;
    login->isLinked = false;
    load(R"(QtObject {
        property bool isLoggedIn: KovalinClient.isLoggedIn
        property bool logsOut: false
        onLogsOutChanged: KovalinClient.logout()
    })");
    EXPECT_EQ(root->property("isLoggedIn"), false);
    login->link();
    ASSERT_TRUE(waitFor([this] { return root->property("isLoggedIn").toBool(); }));
    root->setProperty("logsOut", true);
    ASSERT_TRUE(waitFor([this] { return !root->property("isLoggedIn").toBool(); }));
}

constexpr auto loginDocument = R"(QtObject {
    property var ends: []
    property Connections connections: Connections {
        target: KovalinClient
        function onLoginFinished(isLinked, error) { ends = ends.concat([isLinked, error]) }
    }
    Component.onCompleted: KovalinClient.login()
})";

TEST_F(KovalinClientTest, tellsHowALoginEnds)
{
    const InstalledRecordingLogin login;
    load(loginDocument);
    ASSERT_EQ(login->logins.size(), 1U);
    login->logins[0].completion(std::nullopt);
    EXPECT_EQ(root->property("ends").toList(), (QVariantList{true, QString()}));
    login->logins[0].completion(QXSDKError{403, QStringLiteral("refused"), QStringLiteral("by the user")});
    EXPECT_EQ(root->property("ends").toList().value(3), QStringLiteral("refused: by the user"));
}

TEST_F(KovalinClientTest, mayGoWhileALoginIsUnderWay)
{
    const InstalledRecordingLogin login;
    load(loginDocument);
    ASSERT_EQ(login->logins.size(), 1U);
    root.reset();
    engine.reset();
    login->logins[0].completion(std::nullopt);
    RecordingLoginClient::tellLinkSucceeded();
    drainMainQueue();
}

TEST_F(KovalinClientTest, hasThemesWithTheBasesColorsButForThoseThatAreSet)
{
    load(R"(KovalinTheme {
        searchColor: "gold"
        searchPillColors: ["red", Qt.rgba(0, 1, 0, 1), "no colour"]
        base: KovalinTheme.Dark
    })");
    const auto* const made = qobject_cast<KovalinTheme*>(root.get());
    const auto theme = made->theme();
    const auto dark = QXSDKKovalinStickerPickerTheme::darkTheme();
    EXPECT_TRUE(colorsEqual(theme->searchColor(), QColor(QStringLiteral("gold"))));
    EXPECT_EQ(theme->searchPillColors(), (QList<QColor>{Qt::red, QColor::fromRgbF(0, 1, 0)}));
    EXPECT_TRUE(colorsEqual(theme->backgroundColor(), dark->backgroundColor()));
    EXPECT_TRUE(colorsEqual(theme->searchPillShadowColor(), dark->searchPillShadowColor()));
    EXPECT_FALSE(theme->shouldRandomizeSearchPillColors());

    root->setProperty("searchPillColors", QVariantList());
    root->setProperty("shouldRandomizeSearchPillColors", true);
    root->setProperty("backgroundColor", QColor(Qt::blue));
    EXPECT_TRUE(made->theme()->searchPillColors()->isEmpty());
    EXPECT_TRUE(made->theme()->shouldRandomizeSearchPillColors());
    EXPECT_TRUE(colorsEqual(made->theme()->backgroundColor(), Qt::blue));
}

} // namespace
