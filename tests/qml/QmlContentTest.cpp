// A QML host over the development server: its user logs in and taps a sticker.
#include "kits/core/QXSDKClientSetup.h"
#include "kits/login/default/QXSDKOAuthLoginClient.h"
#include "kovalin-backend/Backend.h"
#include "picker/grid/QXSDKKovalinStickerCollectionViewCell.h"
#include "platform/net/UrlSession.h"
#include "qml/KovalinIcon.h"
#include "qml/QmlHost.h"

#include <QtCore/QUrlQuery>
#include <QtGui/QImage>
#include <QtQuick/QQuickWindow>
#include <QtTest/QTest>

using namespace kovalin::platform;
using namespace kovalin::test;

namespace {

/// A user who approves what the page asks for.
bool approve(const QUrl& url)
{
    QUrl page = url;
    QUrlQuery query(page);
    query.addQueryItem(QStringLiteral("auto"), QStringLiteral("approve"));
    page.setQuery(query);
    UrlSession::shared().dataTask({.url = page}, [](const auto&, const auto&, const auto&) {})->resume();
    return true;
}

/// A tile that can be tapped; null before there is one.
QQuickItem* loadedTile(QQuickItem& item)
{
    constexpr double underTheBars = 150; // points
    if (const auto* const tile = qobject_cast<QXSDKKovalinStickerCollectionViewCell*>(&item);
        tile && tile->isLoaded() && tile->mapToScene({}).y() > underTheBars) {
        return &item;
    }
    for (QQuickItem* const child : item.childItems()) {
        if (QQuickItem* const found = loadedTile(*child)) {
            return found;
        }
    }
    return nullptr;
}

class QmlContentTest : public QmlHost {
protected:
    QmlContentTest()
    {
        QXSDKLoginClient::setShared(std::make_shared<QXSDKOAuthLoginClient>(
            QXSDKOAuthLoginOptions{.openUrl = approve, .tokenStore = QXSDKTokenStore::memory()}));
    }
    ~QmlContentTest() override
    {
        root.reset();
        QXSDKLoginClient::setShared(nullptr);
        QXSDKClientSetup::setShared({});
    }

    const kovalin::backend::Backend server{{.contentFolder = QStringLiteral(KOVALIN_EXAMPLE_CONTENT)}};
};

TEST_F(QmlContentTest, givesTheStickerThatIsTappedToTheHostsScript)
{
    load(R"(Window {
        id: window
        required property string backend
        property string url
        property var image
        width: 412
        height: 700
        visible: true
        Component.onCompleted: {
            KovalinClient.clientId = "qml"
            KovalinClient.contentBaseUrl = backend
            KovalinClient.authenticationBaseUrl = backend + "/accounts"
            KovalinClient.apiBaseUrl = backend + "/api"
            KovalinClient.login()
        }
        KovalinStickerPicker {
            id: stickers
            objectName: "picker"
            anchors.fill: parent
            onStickerSelected: (url, image) => {
                window.url = url
                window.image = image
            }
        }
        KovalinIcon {
            objectName: "icon"
            picker: stickers
        }
    })",
         {{QStringLiteral("backend"), server.baseUrl().toString()}});
    auto& shown = *qobject_cast<QQuickWindow*>(root.get());
    auto& item = *find<KovalinStickerPicker>("picker");
    QQuickItem* tile = nullptr;
    ASSERT_TRUE(waitFor([&] {
        shown.grabWindow();
        tile = loadedTile(item);
        return tile != nullptr;
    }));
    EXPECT_EQ(find<KovalinIcon>("icon")->property("linked"), true);
    QTest::mouseClick(&shown, Qt::LeftButton, {}, tile->mapToScene(tile->boundingRect().center()).toPoint());
    ASSERT_TRUE(waitFor([this] { return !root->property("url").toString().isEmpty(); }));
    EXPECT_TRUE(
        root->property("url").toString().startsWith(server.baseUrl().toString() + QStringLiteral("/stickers/")));
    EXPECT_EQ(root->property("image").value<QImage>().size(), QSize(320, 320));
}

} // namespace
