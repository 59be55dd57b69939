// What users and hosts go through, from end to end.
#include "host/HostStory.h"
#include "kovalin-backend/Backend.h"
#include "support/QtPrinting.h"

#include <algorithm>

namespace kovalin::test {
namespace {

const QString container = QStringLiteral("qxsdk_kovalin_container");
const QString content = QStringLiteral("qxsdk_kovalin_content");
const QString tile = QStringLiteral("qxsdk_kovalin_sticker");
const QString searchField = QStringLiteral("qxsdk_kovalin_content_search");
const QString icon = QStringLiteral("qxsdk_kovalin_icon");
const QString tag = QStringLiteral("QXSDKKovalinTagViewCell");
const QString loginView = QStringLiteral("QXSDKKovalinLoginView");
const QString noPermissionView = QStringLiteral("QXSDKKovalinNoPermissionView");
const QString createAvatarView = QStringLiteral("QXSDKKovalinCreateAvatarView");
const QString errorView = QStringLiteral("QXSDKKovalinErrorView");

const QString opened = QStringLiteral("kovalin_kit_sticker_picker_open");
const QString closed = QStringLiteral("kovalin_kit_sticker_picker_close");
const QString permission = QStringLiteral("kovalin_kit_permission_update");

enum ViewType { Content = 1, CreateAvatar = 2, Login = 3, NoPermission = 4 };

QStringList urlsOf(const QList<QJsonObject>& items)
{
    QStringList urls;
    for (const QJsonObject& item : items) {
        urls.append(item[u"url"].toString());
    }
    return urls;
}

class HostStories : public HostStory {
protected:
    /// The picker views that were told with opens, in order.
    [[nodiscard]] QList<int> openedViews(const QString& events) const
    {
        QList<int> views;
        for (const QJsonObject& open : files.fields(events, opened)) {
            views.append(open[u"sticker_picker_view"].toInt());
        }
        return views;
    }
    /// How far the grid, which is higher than the row of tags, is scrolled down.
    [[nodiscard]] double gridOffset(const QString& tree) const
    {
        double offset = 0;
        double height = 0;
        for (const QJsonObject& view : files.items(tree, QStringLiteral("CollectionView"))) {
            if (view[u"frame"][3].toDouble() > height) {
                height = view[u"frame"][3].toDouble();
                offset = view[u"offset"][1].toDouble();
            }
        }
        return offset;
    }
    [[nodiscard]] qsizetype count(const QString& events, const QString& event) const
    {
        return files.fields(events, event).size();
    }
    [[nodiscard]] int countOf(const QString& events, const QString& metric) const
    {
        const QJsonObject counts = files.events(events)[u"metrics"][u"counts"].toObject();
        for (const QString& name : counts.keys()) {
            if (name.endsWith(metric)) {
                return counts[name].toInt();
            }
        }
        return 0;
    }
};

TEST_F(HostStories, FromAFirstStartWithoutAnAccountToTheFirstSticker)
{
    play(QStringLiteral("first-start"));
    EXPECT_TRUE(files.has(QStringLiteral("login"), loginView));
    EXPECT_FALSE(files.has(QStringLiteral("login"), content));
    EXPECT_EQ(openedViews(QStringLiteral("login")), QList<int>{Login});
    EXPECT_TRUE(files.analytics(QStringLiteral("login")).contains(QStringLiteral("kovalin_kit_sticker_picker_mount")));

    EXPECT_FALSE(files.has(QStringLiteral("browsing"), loginView));
    EXPECT_TRUE(files.has(QStringLiteral("browsing"), content));
    const auto tiles = files.items(QStringLiteral("browsing"), tile);
    EXPECT_GE(tiles.size(), 4);
    EXPECT_TRUE(std::ranges::any_of(tiles, [](const QJsonObject& item) { return item[u"loaded"].toBool(); }));
    EXPECT_TRUE(files.texts(QStringLiteral("browsing"), tag).contains(QStringLiteral("Hello & Goodbye")));
    EXPECT_FALSE(files.picture(QStringLiteral("browsing")).isEmpty());
    const QStringList linked = files.analytics(QStringLiteral("browsing"));
    EXPECT_TRUE(linked.contains(QStringLiteral("kovalin_kit_hearth_link_tap")));
    EXPECT_TRUE(linked.contains(QStringLiteral("kovalin_kit_hearth_link_success")));

    EXPECT_EQ(gridOffset(QStringLiteral("scrolled")), gridOffset(QStringLiteral("browsing")) + 120);
    EXPECT_EQ(gridOffset(QStringLiteral("scrolled-back")), gridOffset(QStringLiteral("browsing")));

    EXPECT_EQ(files.ownTexts(QStringLiteral("found"), searchField), QStringList{QStringLiteral("lov")});
    EXPECT_TRUE(files.texts(QStringLiteral("found"), tag).contains(QStringLiteral("love")));
    const auto focus = files.calls(QStringLiteral("found"), QStringLiteral("searchFieldFocusDidChange"));
    ASSERT_EQ(focus.size(), 1);
    EXPECT_TRUE(focus[0][u"focus"].toBool());

    const auto chosen = files.calls(QStringLiteral("sent"), QStringLiteral("didSelectKovalinWithURL"));
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_TRUE(urlsOf(files.items(QStringLiteral("found"), tile)).contains(chosen[0][u"url"].toString()));
    EXPECT_GT(chosen[0][u"image"][0].toInt(), 0);
    EXPECT_TRUE(files.has(QStringLiteral("sent"), QStringLiteral("host_message_sticker")));
    const auto searches = files.fields(QStringLiteral("sent"), QStringLiteral("kovalin_kit_search"));
    ASSERT_EQ(searches.size(), 1);
    EXPECT_EQ(searches[0][u"search_terms"][0][u"value"].toString(), u"lov");
    EXPECT_EQ(count(QStringLiteral("sent"), QStringLiteral("kovalin_kit_share")), 1);
    EXPECT_EQ(count(QStringLiteral("end"), closed), 1);
    EXPECT_EQ(countOf(QStringLiteral("end"), QStringLiteral("picker:share")), 1);
}

TEST_F(HostStories, ASecondStartShowsTheArchiveWhileTheServerIsSlow)
{
    backend::Backend server({.contentFolder = QStringLiteral(KOVALIN_EXAMPLE_CONTENT)});
    const QStringList options{QStringLiteral("--backend"), server.baseUrl().toString(), QStringLiteral("--caches"),
                              path(QStringLiteral("caches"))};
    play(QStringLiteral("leave-packs"), options);
    server.setAnswer({"/api/graphql#packs", {.kind = backend::AnswerRule::Kind::Nothing}});
    play(QStringLiteral("second-start"), options);
    EXPECT_TRUE(files.has(QStringLiteral("archived"), content));
    EXPECT_FALSE(files.items(QStringLiteral("archived"), tile).isEmpty());
    EXPECT_TRUE(files.texts(QStringLiteral("tags"), tag).contains(QStringLiteral("Hello & Goodbye")));
}

TEST_F(HostStories, NoPermissionAndItsMending)
{
    play(QStringLiteral("no-permission"));
    EXPECT_TRUE(files.has(QStringLiteral("refused"), noPermissionView));
    EXPECT_TRUE(files.has(QStringLiteral("denied"), noPermissionView));
    const auto status = [this](const char* name) {
        const auto updates = files.fields(QString::fromLatin1(name), permission);
        return updates.size() == 1 ? updates[0][u"status"].toInt() : -1;
    };
    EXPECT_EQ(status("denied"), 3);
    EXPECT_EQ(status("without"), 2);
    EXPECT_EQ(status("granted"), 1);
    EXPECT_TRUE(files.has(QStringLiteral("granted"), content));
    EXPECT_FALSE(files.has(QStringLiteral("granted"), noPermissionView));
}

TEST_F(HostStories, NoAvatarLeadsToTheAppThatMakesOne)
{
    play(QStringLiteral("no-avatar"));
    EXPECT_TRUE(files.has(QStringLiteral("none"), createAvatarView));
    EXPECT_EQ(count(QStringLiteral("tapped"), QStringLiteral("kovalin_kit_create_avatar_tap")), 1);
    const QJsonArray addresses = files.events(QStringLiteral("tapped"))[u"opened"].toArray();
    ASSERT_EQ(addresses.size(), 1);
    EXPECT_EQ(addresses[0].toString(), u"itms-apps://store.example/app/avatar");
}

TEST_F(HostStories, AServerThatIsDownIsTriedAgain)
{
    play(QStringLiteral("backend-down"));
    EXPECT_TRUE(files.texts(QStringLiteral("down"), errorView).contains(QStringLiteral("No connection")));
    EXPECT_TRUE(files.texts(QStringLiteral("failing"), errorView).contains(QStringLiteral("Something went wrong")));
    EXPECT_EQ(files.items(QStringLiteral("failing"), errorView).size(), 1);
    EXPECT_TRUE(files.has(QStringLiteral("up"), content));
    EXPECT_FALSE(files.has(QStringLiteral("up"), errorView));
}

TEST_F(HostStories, ASessionIsResumedWithin15SecondsAndRenewedAfterThem)
{
    play(QStringLiteral("sessions"));
    const QString first = files.sessions(QStringLiteral("start"), opened).value(0);
    EXPECT_FALSE(first.isEmpty());
    EXPECT_EQ(files.sessions(QStringLiteral("resumed"), closed), QStringList({first, first}));
    EXPECT_EQ(files.sessions(QStringLiteral("resumed"), opened), QStringList({first, first}));
    EXPECT_EQ(files.sessions(QStringLiteral("renewed"), closed), QStringList{first});
    const QStringList renewed = files.sessions(QStringLiteral("renewed"), opened);
    ASSERT_EQ(renewed.size(), 1);
    EXPECT_NE(renewed[0], first);
    // The time away doesn't count.
    const auto closes = files.fields(QStringLiteral("resumed"), closed);
    EXPECT_LT(closes[1][u"sticker_picker_session_duration_millis"].toInt(), 8000);
}

TEST_F(HostStories, TwoPickersInOneProcess)
{
    play(QStringLiteral("two-pickers"),
         {QStringLiteral("--pickers"), QStringLiteral("2"), QStringLiteral("--width"), QStringLiteral("700")});
    EXPECT_EQ(files.items(QStringLiteral("both"), container).size(), 2);
    EXPECT_EQ(files.items(QStringLiteral("both"), content).size(), 2);
    QStringList sessions = files.sessions(QStringLiteral("start"), opened);
    sessions.removeDuplicates();
    EXPECT_EQ(sessions.size(), 2) << "a session each";
    EXPECT_EQ(files.ownTexts(QStringLiteral("searched"), searchField), QStringList{QStringLiteral("lov")});

    const auto chosen = files.calls(QStringLiteral("chosen"), QStringLiteral("didSelectKovalinWithURL"));
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(chosen[0][u"picker"].toInt(), 2);
    EXPECT_EQ(count(QStringLiteral("left"), closed), 1);
}

TEST_F(HostStories, TheHostsTermsReachPickerAndIcons)
{
    play(QStringLiteral("host-terms"), {QStringLiteral("--icons"), QStringLiteral("2")});
    const auto previews = [this](const QString& tree) {
        return urlsOf(files.items(tree, icon));
    };
    EXPECT_EQ(previews(QStringLiteral("before")), QStringList({QString(), QString()}));
    const QStringList defaultTags = files.texts(QStringLiteral("before"), tag);

    EXPECT_EQ(files.ownTexts(QStringLiteral("replaced"), searchField), QStringList{QStringLiteral("love")});
    const QStringList replaced = previews(QStringLiteral("replaced"));
    ASSERT_EQ(replaced.size(), 2);
    EXPECT_FALSE(replaced[0].isEmpty());
    EXPECT_EQ(replaced[0], replaced[1]);
    EXPECT_EQ(urlsOf(files.items(QStringLiteral("replaced"), tile)).contains(replaced[0]), true);

    EXPECT_TRUE(files.ownTexts(QStringLiteral("blended"), searchField).isEmpty());
    EXPECT_EQ(files.texts(QStringLiteral("blended"), tag), defaultTags);
    const QStringList blended = previews(QStringLiteral("blended"));
    EXPECT_NE(blended[0], replaced[0]);
    EXPECT_TRUE(urlsOf(files.items(QStringLiteral("blended"), tile)).contains(blended[0]));

    EXPECT_EQ(previews(QStringLiteral("nothing")), QStringList({QString(), QString()}));
    EXPECT_EQ(previews(QStringLiteral("typed")), blended);
    EXPECT_EQ(previews(QStringLiteral("after")), QStringList({QString(), QString()})) << "sent";
}

TEST_F(HostStories, StickersStayWhenTheNetworkGoes)
{
    play(QStringLiteral("offline"));
    EXPECT_TRUE(files.has(QStringLiteral("kept"), content));
    EXPECT_FALSE(files.has(QStringLiteral("kept"), errorView));
    EXPECT_TRUE(files.texts(QStringLiteral("found"), tag).contains(QStringLiteral("love")));
    EXPECT_FALSE(files.items(QStringLiteral("found"), tile).isEmpty());
}

TEST_F(HostStories, BeforeAnythingIsDecidedThereIsTheBackgroundAlone)
{
    play(QStringLiteral("undecided"));
    const auto root = files.items(QStringLiteral("undecided"), container);
    ASSERT_EQ(root.size(), 1);
    const QJsonArray children = root[0][u"children"].toArray();
    EXPECT_EQ(children.size(), 1) << "the border at the top";
    EXPECT_EQ(children[0][u"frame"][3].toDouble(), 0.5);
    EXPECT_TRUE(files.has(QStringLiteral("decided"), loginView));
}

TEST_F(HostStories, ASessionGoesOnWhileThePickerCanBeSeen)
{
    play(QStringLiteral("visibility"));
    const QString session = files.sessions(QStringLiteral("start"), opened).value(0);
    for (const char* const name : {"hidden", "narrow", "low", "hidden-again"}) {
        EXPECT_EQ(files.sessions(QString::fromLatin1(name), closed), QStringList{session}) << name;
        EXPECT_EQ(count(QString::fromLatin1(name), opened), 0) << name;
    }
    for (const char* const name : {"shown", "small", "whole"}) {
        EXPECT_EQ(files.sessions(QString::fromLatin1(name), opened), QStringList{session}) << name;
        EXPECT_EQ(count(QString::fromLatin1(name), closed), 0) << name;
    }
    EXPECT_EQ(count(QStringLiteral("moved"), closed), count(QStringLiteral("moved"), opened));
    EXPECT_EQ(count(QStringLiteral("elsewhere"), closed), 0);
    EXPECT_EQ(count(QStringLiteral("back"), closed), count(QStringLiteral("back"), opened));
}

TEST_F(HostStories, ALogoutInTheMiddleOfEverything)
{
    play(QStringLiteral("logouts"));
    for (const char* const name :
         {"while-loading", "while-drawing", "while-searching", "while-on-page", "while-logging-in"}) {
        EXPECT_TRUE(files.has(QString::fromLatin1(name), loginView)) << name;
        EXPECT_FALSE(files.has(QString::fromLatin1(name), content)) << name;
    }
    EXPECT_TRUE(files.has(QStringLiteral("end"), content));
    EXPECT_FALSE(files.has(QStringLiteral("end"), loginView));
}

} // namespace
} // namespace kovalin::test
