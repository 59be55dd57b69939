// A QML host over the development server: what it says reaches the picker, and what its user does reaches it.
#include "kits/core/QXSDKClientSetup.h"
#include "kits/login/default/QXSDKOAuthLoginClient.h"
#include "kovalin-backend/Backend.h"
#include "picker/grid/QXSDKKovalinStickerCollectionViewCell.h"
#include "picker/icon/QXSDKKovalinIconView.h"
#include "platform/ui/TextField.h"
#include "qml/KovalinIcon.h"
#include "qml/QmlHost.h"
#include "support/ApproveLogin.h"

#include <QtGui/QImage>
#include <QtQuick/QQuickWindow>
#include <QtTest/QTest>

#include <functional>

using namespace kovalin::platform;
using namespace kovalin::test;

namespace {

/// The first item below that `isMeant`; null without one.
QQuickItem* itemBelow(const QQuickItem& item, const std::function<bool(const QQuickItem&)>& isMeant)
{
    for (QQuickItem* const child : item.childItems()) {
        if (isMeant(*child)) {
            return child;
        }
        if (QQuickItem* const found = itemBelow(*child, isMeant)) {
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
            QXSDKOAuthLoginOptions{.openUrl = approveLogin, .tokenStore = QXSDKTokenStore::memory()}));
    }
    ~QmlContentTest() override
    {
        root.reset();
        QXSDKLoginClient::shared()->unlink(); // or the packs stay for the next test, whose server is another
        QXSDKLoginClient::setShared(nullptr);
        QXSDKClientSetup::setShared({});
    }

    void openWindow()
    {
        load(R"(Window {
            required property string backend
            property string url
            property var image
            property int tags: 0
            property var focus: []
            width: 412
            height: 700
            visible: true
            id: window
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
                onSearchTagSelected: window.tags += 1
                onSearchFieldFocusChanged: (hasFocus) => { window.focus = window.focus.concat(hasFocus) }
            }
            KovalinIcon {
                objectName: "icon"
                picker: stickers
            }
        })",
             {{QStringLiteral("backend"), server.baseUrl().toString()}});
    }

    [[nodiscard]] QQuickWindow& window() const { return *qobject_cast<QQuickWindow*>(root.get()); }
    [[nodiscard]] KovalinStickerPicker& picker() const { return *find<KovalinStickerPicker>("picker"); }
    /// Waits until there is such an item in the picker, frame by frame; null if it doesn't come.
    [[nodiscard]] QQuickItem* itemOnceThere(const std::function<bool(const QQuickItem&)>& isMeant) const
    {
        QQuickItem* item = nullptr;
        static_cast<void>(waitFor([&] {
            window().grabWindow();
            item = itemBelow(picker(), isMeant);
            return item != nullptr;
        }));
        return item;
    }
    /// A tile that can be tapped.
    [[nodiscard]] QQuickItem* loadedTile() const
    {
        constexpr double underTheBars = 150; // points
        return itemOnceThere([](const QQuickItem& item) {
            const auto* const tile = qobject_cast<const QXSDKKovalinStickerCollectionViewCell*>(&item);
            return tile && tile->isLoaded() && tile->mapToScene({}).y() > underTheBars;
        });
    }
    [[nodiscard]] const TextField* searchField() const
    {
        return qobject_cast<TextField*>(itemBelow(picker(), [](const QQuickItem& item) {
            return item.objectName() == QStringLiteral("qxsdk_kovalin_content_search");
        }));
    }
    void tap(const QQuickItem& item) const
    {
        QTest::mouseClick(&window(), Qt::LeftButton, {}, item.mapToScene(item.boundingRect().center()).toPoint());
    }

    const kovalin::backend::Backend server{{.contentFolder = QStringLiteral(KOVALIN_EXAMPLE_CONTENT)}};
};

TEST_F(QmlContentTest, givesTheStickerThatIsTappedToTheHostsScript)
{
    openWindow();
    const QQuickItem* const tile = loadedTile();
    ASSERT_TRUE(tile);
    EXPECT_EQ(find<KovalinIcon>("icon")->property("linked"), true);
    tap(*tile);
    ASSERT_TRUE(waitFor([this] { return !root->property("url").toString().isEmpty(); }));
    EXPECT_TRUE(
        root->property("url").toString().startsWith(server.baseUrl().toString() + QStringLiteral("/stickers/")));
    EXPECT_EQ(root->property("image").value<QImage>().size(), QSize(320, 320));
}

TEST_F(QmlContentTest, handsTheHostsTermToThePickerAndToItsIcon)
{
    openWindow();
    ASSERT_TRUE(loadedTile());
    const auto* const icon = qobject_cast<QXSDKKovalinIconView*>(find<KovalinIcon>("icon")->childItems().value(0));
    ASSERT_TRUE(icon);
    EXPECT_FALSE(icon->sticker());
    picker().setProperty("searchMode", KovalinStickerPicker::Blend);
    picker().setProperty("searchTerm", QStringLiteral("birthday"));
    ASSERT_TRUE(waitFor([icon] { return icon->sticker() != nullptr; }));
    ASSERT_TRUE(searchField());
    EXPECT_EQ(searchField()->text(), QString());

    picker().setProperty("searchMode", KovalinStickerPicker::Replace);
    EXPECT_TRUE(waitFor([this] { return searchField()->text() == QStringLiteral("birthday"); }));
    picker().setProperty("searchTerm", QString());
    EXPECT_TRUE(waitFor([icon] { return !icon->sticker(); }));
}

TEST_F(QmlContentTest, showsStickersForTwoOnceThereIsAFriend)
{
    openWindow();
    ASSERT_TRUE(loadedTile());
    const auto isForTwo = [](const QQuickItem& item) {
        const auto* const tile = qobject_cast<const QXSDKKovalinStickerCollectionViewCell*>(&item);
        return tile && tile->imageURL() && tile->imageURL()->path().contains(QStringLiteral("/high-five/"));
    };
    EXPECT_FALSE(itemBelow(picker(), isForTwo));
    picker().setProperty("friendUserId", QStringLiteral("user-1"));
    EXPECT_TRUE(itemOnceThere(isForTwo));
}

TEST_F(QmlContentTest, tellsOfTheSearchFieldsFocusAndOfTags)
{
    openWindow();
    const QQuickItem* const tag =
        itemOnceThere([](const QQuickItem& item) { return item.inherits("QXSDKKovalinTagViewCell"); });
    ASSERT_TRUE(tag);
    ASSERT_TRUE(loadedTile());
    tap(*searchField());
    EXPECT_TRUE(waitFor([this] { return root->property("focus").toList() == QVariantList{true}; }));
    tap(*tag);
    EXPECT_TRUE(waitFor([this] { return root->property("tags") == 1; }));
}

} // namespace
