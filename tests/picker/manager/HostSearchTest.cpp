#include "picker/icon/QXSDKKovalinIconView.h"
#include "picker/manager/ViewManagerTest.h"

// The search term of the host's, the icons that show what it finds, and the searches that a session ends with.

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class HostSearchTest : public ViewManagerTest {
protected:
    HostSearchTest() { login->isLinked = false; } // icons ask for no avatar

    void setTerm(const char* term, QXSDKKovalinSearchMode mode = QXSDKKovalinSearchModeReplace)
    {
        manager->setSearchTerm(QString::fromLatin1(term), mode);
    }
    /// An icon that the host has attached.
    [[nodiscard]] std::shared_ptr<QXSDKKovalinIconView> addIcon()
    {
        auto icon = QXSDKKovalinIconView::create(pictures.cache);
        manager->kovalinIcons().add(icon);
        return icon;
    }
    /// The stickers' ids of all changes of icons, "none" for no sticker.
    [[nodiscard]] std::vector<std::string> iconChanges() const
    {
        // The event has no message of its own: the id is all that is known of it.
        constexpr const char* stickerIdField = "2";
        std::vector<std::string> ids;
        for (const QByteArray& event : events->events()) {
            const auto decoded = event.isEmpty() ? DecodedMessage() : decodedRaw(event).value_or(DecodedMessage());
            ids.push_back(decoded.value(stickerIdField).value_or("none"));
        }
        return ids;
    }
    [[nodiscard]] QString searchBarText() const { return barOf(*manager->stickerView())->text(); }
    void type(const char* text)
    {
        tap(place.topLeft() + QPointF(160, 20)); // the search bar's field
        for (const char* letter = text; *letter != '\0'; ++letter) {
            QTest::keyClick(&window(), *letter);
        }
    }
    /// The searches of all search events, as "text:category".
    [[nodiscard]] std::vector<std::string> loggedSearches() const
    {
        std::vector<std::string> searches;
        for (const DecodedMessage& event : eventsNamed("kovalin_kit_search")) {
            for (const DecodedMessage& term : event.all("search_terms")) {
                searches.push_back(term.value("value").value_or("") + ":" + term.value("category").value_or("0"));
            }
        }
        return searches;
    }

    const KovalinStickerPtr found = sticker(QStringLiteral("found"));
    const KovalinStickerPtr other = sticker(QStringLiteral("other"));
};

// Searching

TEST_F(HostSearchTest, aTermIsSearchedInTheContentView)
{
    showContent();
    setTerm("happy");
    EXPECT_EQ(engine->searchedTexts(), QStringList{QStringLiteral("happy")});
    EXPECT_EQ(searchBarText(), QStringLiteral("happy"));
    engine->answer(0, {found}, {});
    EXPECT_EQ(comicIdsOf(*manager->stickerView()->kovalins()), QStringList{QStringLiteral("found")});
}

TEST_F(HostSearchTest, aTermIsSearchedInItsMode)
{
    showContent();
    setTerm("happy", QXSDKKovalinSearchModeBlend);
    EXPECT_EQ(searchBarText(), QString());
    engine->answer(0, {found}, {});
    EXPECT_EQ(comicIdsOf(*manager->stickerView()->kovalins()),
              QStringList({QStringLiteral("found"), QStringLiteral("popular1")}));
}

TEST_F(HostSearchTest, withoutAContentViewATermIsRememberedForTheFirst)
{
    const auto icon = addIcon();
    setTerm("sad");
    setTerm("happy");
    tellFailure(500);
    EXPECT_THAT(engine->searches, IsEmpty());
    showContent();
    EXPECT_EQ(engine->searchedTexts(), QStringList({QStringLiteral("happy"), QStringLiteral("happy")}))
        << "the friends, which are updated, have it repeated";
    EXPECT_EQ(searchBarText(), QStringLiteral("happy"));
    EXPECT_EQ(comicIdsOf(*manager->stickerView()->kovalins()), QStringList{QStringLiteral("popular1")})
        << "until there is an answer";
    engine->answer(0, {found}, {});
    EXPECT_EQ(comicIdsOf(*manager->stickerView()->kovalins()), QStringList{QStringLiteral("found")});
    EXPECT_EQ(icon->sticker(), nullptr) << "nobody waits for the answer";
    EXPECT_THAT(iconChanges(), IsEmpty());
}

TEST_F(HostSearchTest, aTermIsRememberedWithItsMode)
{
    setTerm("happy", QXSDKKovalinSearchModeBlend);
    showContent();
    EXPECT_EQ(engine->searchedTexts(), QStringList{QStringLiteral("happy")});
    EXPECT_EQ(searchBarText(), QString());
    engine->answer(0, {found}, {});
    EXPECT_EQ(comicIdsOf(*manager->stickerView()->kovalins()),
              QStringList({QStringLiteral("found"), QStringLiteral("popular1")}));
}

TEST_F(HostSearchTest, aTermIsRememberedForEachContentViewThatFollows)
{
    showContent();
    setTerm("happy", QXSDKKovalinSearchModeBlend);
    tellContent(std::nullopt);
    setTerm("sad", QXSDKKovalinSearchModeBlend);
    showContent();
    EXPECT_EQ(engine->searchedTexts(), QStringList({QStringLiteral("happy"), QStringLiteral("sad")}));
    tellContent(std::nullopt);
    showContent();
    EXPECT_EQ(engine->searchedTexts(),
              QStringList({QStringLiteral("happy"), QStringLiteral("sad"), QStringLiteral("sad")}));
}

TEST_F(HostSearchTest, withoutATermNothingIsSearched)
{
    showContent();
    EXPECT_THAT(engine->searches, IsEmpty());
    EXPECT_EQ(searchBarText(), QString());
}

// The icons

TEST_F(HostSearchTest, theFirstStickerGoesToEachIconAndEachChangeIsLogged)
{
    showContent();
    const auto first = addIcon();
    const auto second = addIcon();
    const auto third = addIcon();
    third->setSticker(found);
    setTerm("happy");
    EXPECT_EQ(first->sticker(), nullptr) << "until there is an answer";
    engine->answer(0, {found, other}, {});
    EXPECT_EQ(first->sticker(), found);
    EXPECT_EQ(second->sticker(), found);
    EXPECT_EQ(third->sticker(), found);
    EXPECT_THAT(iconChanges(), ElementsAre("found", "found")) << "the third had it";
}

TEST_F(HostSearchTest, nothingFoundIsNoStickerForTheIcons)
{
    showContent();
    const auto icon = addIcon();
    setTerm("happy");
    engine->answer(0, {}, {});
    EXPECT_THAT(iconChanges(), IsEmpty()) << "there was none before";
    setTerm("sad");
    engine->answer(1, {found}, {});
    setTerm("glad");
    engine->answer(2, {}, {});
    EXPECT_EQ(icon->sticker(), nullptr);
    EXPECT_THAT(iconChanges(), ElementsAre("found", "none"));
}

TEST_F(HostSearchTest, aTermThatIsTooShortTakesTheStickersAwayAtOnce)
{
    showContent();
    const auto icon = addIcon();
    icon->setSticker(found);
    setTerm("h");
    EXPECT_EQ(icon->sticker(), nullptr);
    EXPECT_THAT(engine->searches, IsEmpty());
    EXPECT_THAT(iconChanges(), ElementsAre("none"));
}

TEST_F(HostSearchTest, anAnswerToAnotherTermIsDropped)
{
    showContent();
    const auto icon = addIcon();
    setTerm("happy");
    setTerm("sad");
    engine->answer(0, {found}, {});
    EXPECT_EQ(icon->sticker(), nullptr);
    engine->answer(1, {other}, {});
    EXPECT_EQ(icon->sticker(), other);
    EXPECT_THAT(iconChanges(), ElementsAre("other"));
}

TEST_F(HostSearchTest, anAnswerCountsForEachSearchOfItsTerm)
{
    showContent();
    const auto icon = addIcon();
    setTerm("happy");
    setTerm("sad");
    setTerm("happy", QXSDKKovalinSearchModeBlend);
    engine->answer(0, {found}, {});
    EXPECT_EQ(icon->sticker(), found);
    engine->answer(2, {other}, {});
    EXPECT_EQ(icon->sticker(), other);
}

TEST_F(HostSearchTest, aTermThatIsOnlyRememberedMakesAnswersToTheFormerOneStale)
{
    showContent();
    const auto icon = addIcon();
    setTerm("happy");
    tellContent(std::nullopt);
    setTerm("sad");
    engine->answer(0, {found}, {});
    EXPECT_EQ(icon->sticker(), nullptr);
    setTerm("happy");
    engine->answer(0, {found}, {});
    EXPECT_EQ(icon->sticker(), found) << "whatever is shown by then";
}

TEST_F(HostSearchTest, whatIsTypedLeavesTheIconsAlone)
{
    showContent();
    const auto icon = addIcon();
    type("ha");
    ASSERT_EQ(engine->searches.size(), 1U);
    engine->answer(0, {found}, {});
    EXPECT_EQ(icon->sticker(), nullptr);
    EXPECT_THAT(events->events(), IsEmpty());
}

TEST_F(HostSearchTest, iconsComeAndGo)
{
    showContent();
    const auto removed = addIcon();
    auto dead = addIcon();
    const auto stays = addIcon();
    setTerm("happy");
    manager->kovalinIcons().remove(removed);
    const std::weak_ptr<QXSDKKovalinIconView> gone = dead;
    dead.reset();
    EXPECT_TRUE(gone.expired()) << "held weakly";
    const auto late = addIcon();
    engine->answer(0, {found}, {});
    EXPECT_EQ(removed->sticker(), nullptr);
    EXPECT_EQ(stays->sticker(), found);
    EXPECT_EQ(late->sticker(), found) << "attached by the time of the answer";
    EXPECT_THAT(iconChanges(), ElementsAre("found", "found"));
}

// A session's end

TEST_F(HostSearchTest, aSessionEndsWithTheSearchesThatLedToNothing)
{
    showContent();
    sessions->didBecomeActive();
    type("hap");
    setTerm("host");
    sessions->willResignActive();
    EXPECT_THAT(loggedSearches(), ElementsAre("hap:1")) << "a term of the host's is no search of the user's";
    sessions->didBecomeActive();
    sessions->willResignActive();
    EXPECT_EQ(eventsNamed("kovalin_kit_search").size(), 1U) << "there is none left";
}

TEST_F(HostSearchTest, aSessionWithoutSearchesTellsOfNone)
{
    sessions->didBecomeActive();
    sessions->willResignActive(); // no view is current
    tellFailure(500);
    sessions->didBecomeActive();
    sessions->willResignActive();
    showContent();
    sessions->didBecomeActive();
    sessions->willResignActive();
    EXPECT_EQ(eventsNamed("kovalin_kit_sticker_picker_close").size(), 3U);
    EXPECT_THAT(eventsNamed("kovalin_kit_search"), IsEmpty());
}

TEST_F(HostSearchTest, theSearchesOfAContentViewGoWithIt)
{
    showContent();
    sessions->didBecomeActive();
    type("hap");
    tellContent(std::nullopt);
    sessions->willResignActive();
    EXPECT_THAT(eventsNamed("kovalin_kit_search"), IsEmpty());
}

} // namespace
