#include "picker/content/ContentViewTest.h"
#include "platform/foundation/Clock.h"

// What a user does in a content view, and who is told.

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ContentViewEventsTest : public ContentViewTest {
protected:
    /// A search for "ha" that is answered.
    void searchAndFind(const KovalinStickerList& stickers, const QStringList& tags = {QStringLiteral("hat")})
    {
        const std::size_t number = engine->searches.size();
        search("ha");
        engine->answer(number, stickers, tags);
        settle();
    }
    [[nodiscard]] const RecordingContentDelegate::Selected& selected() const { return delegate->selected.back(); }
};

// Focus

TEST_F(ContentViewEventsTest, tellsWhenTheSearchBarHasTheFocus)
{
    open();
    focusField();
    EXPECT_THAT(delegate->told, ElementsAre("focus"));
    key(Qt::Key_Return);
    EXPECT_THAT(delegate->told, ElementsAre("focus", "no focus"));
}

TEST_F(ContentViewEventsTest, bringsTheBarsBackForTheFocusAndKeepsThemWhileItIsThere)
{
    setContent(rows(20));
    open();
    scrollTo(30);
    ASSERT_EQ(view->navbarOffset(), 30);
    focusField();
    EXPECT_EQ(view->navbarOffset(), 0);
    scrollTo(60);
    EXPECT_EQ(view->navbarOffset(), 0);
    key(Qt::Key_Return);
    EXPECT_EQ(view->navbarOffset(), 0) << "the offset stays";
    scrollTo(80);
    EXPECT_GT(view->navbarOffset(), 0);
}

TEST_F(ContentViewEventsTest, passesKeysThatNobodyUsesToTheSearchBar)
{
    open();
    grid()->forceActiveFocus(Qt::TabFocusReason);
    type("ha");
    EXPECT_EQ(bar()->text(), QStringLiteral("ha"));
    EXPECT_TRUE(bar()->isFirstResponder());
    EXPECT_THAT(engine->searchedTexts(), ElementsAre(QStringLiteral("ha")));
}

TEST_F(ContentViewEventsTest, keepsKeysThatTheGridUses)
{
    open();
    grid()->forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Right);
    EXPECT_EQ(grid()->focusedItem(), 1);
    EXPECT_FALSE(bar()->isFirstResponder());
}

TEST_F(ContentViewEventsTest, passesNoKeysToASearchBarThatIsHiddenOrCovered)
{
    open();
    tapTag(0);
    ASSERT_TRUE(results());
    resultsHeader()->backButton()->forceActiveFocus(Qt::TabFocusReason);
    type("ha");
    EXPECT_EQ(bar()->text(), QString());
    EXPECT_FALSE(bar()->isFirstResponder());
    view->removeFromSuperview();

    open(configWith(false, true));
    grid()->forceActiveFocus(Qt::TabFocusReason);
    type("ha");
    EXPECT_EQ(bar()->text(), QString());
    EXPECT_THAT(engine->searches, IsEmpty());
}

// Stickers

TEST_F(ContentViewEventsTest, tellsWhenTheFirstStickerIsThereAndWhenTheViewWasMade)
{
    const double before = currentTimeSeconds();
    open();
    EXPECT_GE(view->coldStartTime(), before);
    EXPECT_LE(view->coldStartTime(), currentTimeSeconds());
    ASSERT_TRUE(isLoaded(*grid(), 0));
    ASSERT_TRUE(isLoaded(*grid(), 1));
    EXPECT_THAT(delegate->startTimes, ElementsAre(view->coldStartTime()));
}

TEST_F(ContentViewEventsTest, aStickerOfThePopularListHasCategoryZeroWhateverWasSearchedBefore)
{
    open();
    search("ha");
    key(Qt::Key_Backspace);
    key(Qt::Key_Backspace);
    tapTile(*grid(), 2);
    ASSERT_EQ(delegate->selected.size(), 1U);
    EXPECT_EQ(selected().category, 0);
    EXPECT_EQ(selected().sticker, provider->popularKovalins()->at(2));
    EXPECT_FALSE(selected().image.isNull());
}

TEST_F(ContentViewEventsTest, aStickerOfThePopularListHasCategoryZeroAlsoWithAFriend)
{
    setContent({sticker(QStringLiteral("a")), friendSticker(QStringLiteral("b"))});
    open();
    EXPECT_EQ(shown(), QStringList{QStringLiteral("a")});
    setFriend(QStringLiteral("x"));
    EXPECT_EQ(shown(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(view->kovalins(), provider->popularKovalins()) << "the very list";
    search("h");
    tapTile(*grid(), 0);
    EXPECT_EQ(selected().category, 0);
}

TEST_F(ContentViewEventsTest, aStickerThatWasFoundHasTheCategoryOfTheSearch)
{
    open();
    searchAndFind(*provider->popularKovalins());
    tapTile(*grid(), 0);
    ASSERT_EQ(delegate->selected.size(), 1U);
    EXPECT_EQ(selected().category, 1) << "equal stickers aren't the popular list";
    EXPECT_EQ(selected().terms, QStringList{QStringLiteral("ha:1")});
    EXPECT_FALSE(bar()->isFirstResponder());
    EXPECT_THAT(delegate->told, ElementsAre("focus", "no focus", "selected"));

    tapTile(*grid(), 1);
    EXPECT_EQ(selected().category, 1);
    EXPECT_EQ(selected().terms, QStringList()) << "they were handed over";
}

TEST_F(ContentViewEventsTest, aStickerThatTheHostSearchedHasItsCategory)
{
    open();
    for (const auto mode : {QXSDKKovalinSearchModeReplace, QXSDKKovalinSearchModeBlend}) {
        view->setSearchTerm(QStringLiteral("happy"), mode, QXSDKKovalinCategoryHostTerm);
        engine->answer(engine->searches.size() - 1, rows(1, QStringLiteral("found")), {});
        tapTile(*grid(), 0);
        EXPECT_EQ(selected().category, 4);
        EXPECT_EQ(selected().terms, QStringList());
    }
    EXPECT_EQ(delegate->selected.size(), 2U);
}

TEST_F(ContentViewEventsTest, aTileThatIsStillLoadingSelectsNothing)
{
    setContent({sticker(QStringLiteral("held"), "/held")});
    open();
    tap(grid()->frameOfItem(0).center() - grid()->contentOffset());
    EXPECT_THAT(delegate->selected, IsEmpty());
}

// Tags

TEST_F(ContentViewEventsTest, opensThePageOfATagThatIsTapped)
{
    setContent(rows(20));
    open();
    engine->stickersByTag = {{QStringLiteral("Moods"), rows(1, QStringLiteral("mood"))}};
    scrollTo(20);
    ASSERT_EQ(view->navbarOffset(), 20);
    tapTag(1);
    ASSERT_TRUE(results());
    EXPECT_EQ(view->subviews().size(), 4);
    EXPECT_EQ(results()->frame(), QRectF(0, 0, width, height));
    EXPECT_EQ(resultsGrid()->numberOfItems(), 4);
    ASSERT_EQ(engine->exactSearches.size(), 1U);
    EXPECT_EQ(engine->exactSearches[0].text, QStringLiteral("Moods"));
    EXPECT_EQ(engine->exactSearches[0].resultTypes,
              QXSDKKovalinSearchResultTypes{QXSDKKovalinSearchResultTypeSolovalin});
    EXPECT_EQ(view->navbarOffset(), 0);
    EXPECT_THAT(delegate->told, ElementsAre("tag"));
    EXPECT_THAT(engine->searches, IsEmpty());
}

TEST_F(ContentViewEventsTest, wantsTwoPersonStickersOfATagWithAFriend)
{
    setFriend(QStringLiteral("a"));
    open();
    tapTag(0);
    ASSERT_EQ(engine->exactSearches.size(), 1U);
    EXPECT_EQ(engine->exactSearches[0].resultTypes,
              QXSDKKovalinSearchResultTypes(
                  {QXSDKKovalinSearchResultTypeSolovalin, QXSDKKovalinSearchResultTypeFriendvalin}));
}

TEST_F(ContentViewEventsTest, opensAnEmptyPageForATagWithoutStickers)
{
    open();
    tapTag(0);
    ASSERT_TRUE(results());
    EXPECT_EQ(resultsGrid()->numberOfItems(), 0);
}

TEST_F(ContentViewEventsTest, aTagTakesTheFocusFromTheSearchBar)
{
    open();
    searchAndFind(rows(1, QStringLiteral("found")));
    tapTag(0);
    EXPECT_FALSE(bar()->isFirstResponder());
    EXPECT_THAT(delegate->told, ElementsAre("focus", "no focus", "tag"));
    EXPECT_EQ(bar()->text(), QStringLiteral("ha")) << "the search stands";
}

TEST_F(ContentViewEventsTest, aTagOfThePopularListHasCategoryThree)
{
    open();
    engine->stickersByTag = {{QStringLiteral("Moods"), rows(1, QStringLiteral("mood"))}};
    tapTag(1);
    tapTile(*resultsGrid(), 0);
    ASSERT_EQ(delegate->selected.size(), 1U);
    EXPECT_EQ(selected().sticker->comicId(), QStringLiteral("mood0"));
    EXPECT_FALSE(selected().image.isNull());
    EXPECT_EQ(selected().category, 3);
    EXPECT_EQ(selected().terms, QStringList{QStringLiteral("Moods:3")});
    EXPECT_TRUE(results()) << "the page stays";
}

TEST_F(ContentViewEventsTest, aTagBesideResultsHasCategoryTwo)
{
    open();
    searchAndFind(rows(1, QStringLiteral("found")));
    engine->stickersByTag = {{QStringLiteral("hat"), rows(1, QStringLiteral("hat"))}};
    tapTag(0);
    tapTile(*resultsGrid(), 1);
    ASSERT_EQ(delegate->selected.size(), 1U);
    EXPECT_EQ(selected().category, 2);
    EXPECT_EQ(selected().terms, QStringList({QStringLiteral("ha:1"), QStringLiteral("hat:2")}));
}

TEST_F(ContentViewEventsTest, goesBackFromATagToWhatWasThereBefore)
{
    open();
    searchAndFind(rows(1, QStringLiteral("found")));
    const QStringList before = shown();
    tapTag(0);
    tap(resultsHeader()->backButton()->frame().center());
    EXPECT_FALSE(results());
    EXPECT_EQ(shown(), before);
    EXPECT_EQ(bar()->text(), QStringLiteral("ha"));
    EXPECT_EQ(textsOf(*strip()), QStringList{QStringLiteral("hat")});
}

TEST_F(ContentViewEventsTest, leavesATagAndTheSearch)
{
    open();
    searchAndFind(rows(1, QStringLiteral("found")));
    tapTag(0);
    tap(resultsHeader()->cancelButton()->frame().center());
    EXPECT_FALSE(results());
    EXPECT_EQ(bar()->text(), QString());
    EXPECT_EQ(shown(), popular());
    EXPECT_EQ(textsOf(*strip()), defaultTags());
    EXPECT_THAT(engine->searchedTexts(), ElementsAre(QStringLiteral("ha"))) << "nothing is searched";
}

TEST_F(ContentViewEventsTest, opensOnePageAfterTheOther)
{
    open();
    tapTag(0);
    const std::weak_ptr<QXSDKKovalinTagResultsView> first = results();
    tap(resultsHeader()->backButton()->frame().center());
    drainMainQueue();
    EXPECT_FALSE(first.expired()) << "kept until the next";
    tapTag(1);
    drainMainQueue();
    EXPECT_TRUE(first.expired());
    EXPECT_EQ(view->subviews().size(), 4);
}

TEST_F(ContentViewEventsTest, whatAPageCoversIsOutOfReachForKeys)
{
    open();
    tapTag(0);
    EXPECT_FALSE(grid()->isEnabled());
    EXPECT_FALSE(strip()->isEnabled());
    EXPECT_FALSE(bar()->isEnabled());
    tap(resultsHeader()->backButton()->frame().center());
    EXPECT_TRUE(grid()->isEnabled());
    EXPECT_TRUE(strip()->isEnabled());
    EXPECT_TRUE(bar()->isEnabled());
}

TEST_F(ContentViewEventsTest, choosesATagByKeys)
{
    open();
    pillsOf(*strip())->forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Right);
    key(Qt::Key_Return);
    EXPECT_TRUE(results());
    ASSERT_EQ(engine->exactSearches.size(), 1U);
    EXPECT_EQ(engine->exactSearches[0].text, QStringLiteral("Moods"));
}

// The friend

TEST_F(ContentViewEventsTest, drawsTwoPersonStickersWithTheFriend)
{
    pictures.script("/two/x", Qt::yellow);
    setContent({friendSticker(QStringLiteral("pair"))});
    open();
    EXPECT_THAT(*view->kovalins(), IsEmpty());
    setFriend(QStringLiteral("x"));
    settle();
    EXPECT_TRUE(isLoaded(*grid(), 0));
    friends->clear();
    EXPECT_THAT(*view->kovalins(), IsEmpty());
}

TEST_F(ContentViewEventsTest, tellsNobodyWhenItsDelegateIsGone)
{
    open();
    searchAndFind(rows(1, QStringLiteral("found")));
    delegate.reset();
    tapTile(*grid(), 0);
    EXPECT_EQ(written(view->popAllSearchSequence()), QStringList()) << "handed over all the same";
    tapTag(0);
    EXPECT_TRUE(results());
}

} // namespace
