#include "content/QXSDKKovalinFriendCache.h"
#include "kits/core/QXSDKClientSetup.h"
#include "picker/controller/ControllerTest.h"
#include "picker/status/QXSDKKovalinCreateAvatarView.h"
#include "picker/status/QXSDKKovalinErrorView.h"
#include "picker/status/QXSDKKovalinLoginView.h"
#include "picker/status/QXSDKKovalinNoPermissionView.h"
#include "platform/ui/Button.h"
#include "support/RecordingMetricsQueue.h"
#include "support/RecordingURLOpener.h"

#include <gmock/gmock.h>

// What a picker tells its host, and what it logs, of what a user does in its views.

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

/// A host that has only what it must.
class PlainHost final : public QXSDKKovalinStickerPickerViewControllerDelegate {
public:
    void kovalinStickerPickerViewControllerDidSelectKovalinWithURL(QXSDKKovalinStickerPickerViewController&,
                                                                   const QString& url, const QImage&) override
    {
        urls.append(url);
    }

    QStringList urls;
};

class ControllerDelegateTest : public ControllerTest {
protected:
    void focusAndLeave()
    {
        focusField();
        key(Qt::Key_Return);
    }
    static QXSDKError errorWithStatus(int status)
    {
        QXSDKError error;
        error.statusCode = status;
        return error;
    }
    void tapButtonOf(const View& view, qsizetype place) { tap(partOf<View>(view, place)->frame().center()); }
};

// Stickers

TEST_F(ControllerDelegateTest, tellsOfATappedStickerByItsUrlAndItsPicture)
{
    openWithContent();
    tapTile(1);
    EXPECT_THAT(delegate->told, ElementsAre("selected"));
    EXPECT_THAT(delegate->tellers, ElementsAre(controller.get()));
    EXPECT_EQ(delegate->selected.at(0).url, pictures.url("/red").toString());
    const QImage image = delegate->selected.at(0).image;
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.pixelColor(image.rect().center()), QColor(Qt::red));
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent, OpenEvent, ShareEvent)) << "nothing was searched";
}

TEST_F(ControllerDelegateTest, tellsOfATwoPersonStickerWithTheFriendsAvatar)
{
    QXSDKKovalinFriendCache::shared()->updateWithData({{QStringLiteral("friend of two"), QStringLiteral("avatar-2")}});
    pictures.script("/two/avatar-2", Qt::blue);
    auto two = std::make_shared<KovalinSticker>();
    two->setComicId(QStringLiteral("two"));
    two->setUrl(pictures.url("/two").toString() + QStringLiteral("/%s"));
    two->setFriendvalin(true);
    open();
    controller->setFriendUserId(QStringLiteral("friend of two"));
    loadContent({two});
    tapTile(0);
    ASSERT_EQ(delegate->selected.size(), 1U);
    EXPECT_EQ(delegate->selected.at(0).url, pictures.url("/two/avatar-2").toString());
}

TEST_F(ControllerDelegateTest, logsASearchBeforeTheShareThatItLedTo)
{
    openWithContent();
    focusField();
    QTest::keyClick(&window(), 'h');
    QTest::keyClick(&window(), 'a');
    engine->answer(engine->searches.size() - 1, {sticker(QStringLiteral("found"))}, {});
    tapTile(0);
    EXPECT_THAT(delegate->told, ElementsAre("focus", "no focus", "selected"));
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent, OpenEvent, SearchEvent, ShareEvent));
}

TEST_F(ControllerDelegateTest, tellsOfAStickerOfATag)
{
    engine->stickersByTag[QStringLiteral("Popular")] = KovalinStickerList{sticker(QStringLiteral("of a tag"))};
    openWithContent();
    tapTag(0);
    EXPECT_THAT(delegate->told, ElementsAre("tag"));
    const auto results = resultsOf(*content());
    ASSERT_TRUE(results);
    tapTile(*gridOf(*results), 0);
    EXPECT_THAT(delegate->told, ElementsAre("tag", "selected"));
    EXPECT_EQ(delegate->selected.at(0).url, pictures.url("/red").toString());
}

// The rest

TEST_F(ControllerDelegateTest, tellsOfTheSearchFieldsFocus)
{
    openWithContent();
    focusField();
    EXPECT_THAT(delegate->told, ElementsAre("focus"));
    key(Qt::Key_Return);
    EXPECT_THAT(delegate->told, ElementsAre("focus", "no focus"));
    EXPECT_THAT(delegate->tellers, ElementsAre(controller.get(), controller.get()));
}

TEST_F(ControllerDelegateTest, aHostNeedntHearOfTagsAndOfTheFocus)
{
    const auto plain = std::make_shared<PlainHost>();
    controller->setDelegate(plain);
    openWithContent();
    focusAndLeave();
    tapTile(0);
    tapTag(0);
    EXPECT_EQ(plain->urls, QStringList{pictures.url("/red").toString()});
}

TEST_F(ControllerDelegateTest, doesWithoutADelegate)
{
    delegate.reset();
    openWithContent();
    focusAndLeave();
    tapTile(0);
    tapTag(0);
    EXPECT_THAT(eventNumbers(), testing::Contains(ShareEvent)) << "it is logged all the same";
}

TEST_F(ControllerDelegateTest, logsTheFirstRenderSinceTheContentsStart)
{
    const InstalledMetricsQueue metrics;
    const auto perceived = [&metrics] {
        std::vector<std::pair<std::string, double>> latencies;
        for (const auto& [name, start] : metrics->latencies()) {
            if (const auto place = name.indexOf(QStringLiteral("perceived:")); place >= 0) {
                latencies.emplace_back(name.mid(place).toStdString(), start);
            }
        }
        return latencies;
    };
    open();
    clock.advance(std::chrono::seconds(7));
    loadContent();
    ASSERT_TRUE(waitFor([&] {
        settleViews();
        return perceived().size() == 3;
    }));
    const double coldStart = picker.logger->coldStartTime();
    EXPECT_EQ(content()->coldStartTime(), coldStart + 7);
    EXPECT_THAT(perceived(), ElementsAre(Pair("perceived:open", coldStart), Pair("perceived:first_render", coldStart),
                                         Pair("perceived:first_render_grid", coldStart + 7)));
}

// The status views

TEST_F(ControllerDelegateTest, logsATapOnTheLoginButton)
{
    login->isLinked = false;
    open();
    grab();
    const auto view = std::dynamic_pointer_cast<QXSDKKovalinLoginView>(currentView());
    ASSERT_TRUE(view);
    tapButtonOf(*view, 0);
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent, OpenEvent, LinkTapEvent));
}

TEST_F(ControllerDelegateTest, logsATapOnTheCreateAvatarButton)
{
    const InstalledURLOpener opener;
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("host-1"),
                                 .avatarAppStoreUrl = QStringLiteral("itms-apps://store.example/app/id1")});
    open();
    picker.viewManager->contentDidLoadWithPacks(std::nullopt);
    settleViews();
    const auto view = std::dynamic_pointer_cast<QXSDKKovalinCreateAvatarView>(currentView());
    ASSERT_TRUE(view);
    tapButtonOf(*view, 2);
    QXSDKClientSetup::setShared({});
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent, OpenEvent, CreateAvatarTapEvent));
    EXPECT_THAT(opener->told, ElementsAre("open itms-apps://store.example/app/id1"));
}

TEST_F(ControllerDelegateTest, otherViewsTellItNothing)
{
    open();
    picker.viewManager->contentLoadDidFail(errorWithStatus(500));
    settleViews();
    const auto error = std::dynamic_pointer_cast<QXSDKKovalinErrorView>(currentView());
    ASSERT_TRUE(error);
    login->hasScope = false;
    picker.viewManager->contentLoadDidFail(errorWithStatus(401));
    settleViews();
    const auto noPermission = std::dynamic_pointer_cast<QXSDKKovalinNoPermissionView>(currentView());
    ASSERT_TRUE(noPermission);
    tapButtonOf(*noPermission, 1);
    EXPECT_THAT(delegate->told, IsEmpty());
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent, OpenEvent));
}

TEST_F(ControllerDelegateTest, aViewThatOutlivesItsPickerTellsNobody)
{
    login->isLinked = false;
    open();
    const auto view = currentView();
    controller.reset();
    picker = {};
    host.reset();
    root()->addSubview(view);
    grab();
    tapButtonOf(*view, 0);
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent, OpenEvent, CloseEvent));
}

} // namespace
