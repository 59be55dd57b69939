#include "picker/content/FusionContentViewTest.h"

// What is searched, and which answers count.

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QXSDKKovalinSearchResultTypes soloOnly{QXSDKKovalinSearchResultTypeSolovalin};
const QXSDKKovalinSearchResultTypes both{QXSDKKovalinSearchResultTypeSolovalin,
                                         QXSDKKovalinSearchResultTypeFriendvalin};

class ContentViewSearchTest : public ContentViewTest {
protected:
    [[nodiscard]] KovalinStickerList found(const QString& prefix = QStringLiteral("found")) const
    {
        return rows(1, prefix);
    }
    [[nodiscard]] static QStringList foundIds(const QString& prefix = QStringLiteral("found"))
    {
        return {prefix + u'0', prefix + u'1', prefix + u'2', prefix + u'3'};
    }
    void setHostTerm(const QString& term, QXSDKKovalinSearchMode mode = QXSDKKovalinSearchModeReplace)
    {
        view->setSearchTerm(term, mode, QXSDKKovalinCategoryHostTerm,
                            [this](const KovalinStickerPtr& sticker) { completions.push_back(sticker); });
    }
    [[nodiscard]] QStringList history() { return written(view->popAllSearchSequence()); }

    std::vector<KovalinStickerPtr> completions;
};

// Typing

TEST_F(ContentViewSearchTest, searchesFromTwoLettersOnAndForEach)
{
    open();
    search("h");
    EXPECT_THAT(engine->searches, IsEmpty());
    EXPECT_EQ(shown(), popular());
    type("app");
    EXPECT_THAT(engine->searchedTexts(),
                ElementsAre(QStringLiteral("ha"), QStringLiteral("hap"), QStringLiteral("happ")));
    EXPECT_EQ(engine->searches[0].resultTypes, soloOnly);
    EXPECT_EQ(shown(), popular()) << "until an answer is there";
}

TEST_F(ContentViewSearchTest, showsAnAnswersStickersAndTags)
{
    open();
    search("ha");
    engine->answer(0, found(), {QStringLiteral("happy"), QStringLiteral("hat")});
    EXPECT_EQ(shown(), foundIds());
    EXPECT_EQ(textsOf(*strip()), QStringList({QStringLiteral("happy"), QStringLiteral("hat")}));
    EXPECT_TRUE(noResultsOf(*strip())->isHidden());
}

TEST_F(ContentViewSearchTest, showsThatThereIsNothing)
{
    open();
    search("ha");
    engine->answer(0, {}, {});
    EXPECT_THAT(*view->kovalins(), IsEmpty());
    EXPECT_THAT(*strip()->tagTiles(), IsEmpty());
    EXPECT_FALSE(noResultsOf(*strip())->isHidden());
}

TEST_F(ContentViewSearchTest, goesBackToThePopularListAtOneLetter)
{
    open();
    search("ha");
    engine->answer(0, found(), {QStringLiteral("happy")});
    key(Qt::Key_Backspace);
    EXPECT_EQ(shown(), popular());
    EXPECT_EQ(textsOf(*strip()), defaultTags());
    EXPECT_EQ(engine->searches.size(), 1U);
    key(Qt::Key_Backspace);
    EXPECT_EQ(shown(), popular());
}

TEST_F(ContentViewSearchTest, dropsALateAnswerForATextThatIsShorterByNow)
{
    open();
    search("ha");
    key(Qt::Key_Backspace);
    engine->answer(0, found(), {QStringLiteral("happy")});
    EXPECT_EQ(shown(), popular());
    EXPECT_EQ(textsOf(*strip()), defaultTags());
}

TEST_F(ContentViewSearchTest, dropsAnAnswerForATextThatHasChangedSince)
{
    open();
    search("hap");
    engine->answer(1, found(QStringLiteral("new")), {QStringLiteral("new")});
    engine->answer(0, found(QStringLiteral("old")), {QStringLiteral("old")});
    EXPECT_EQ(shown(), foundIds(QStringLiteral("new")));
    EXPECT_EQ(textsOf(*strip()), QStringList{QStringLiteral("new")});
}

TEST_F(ContentViewSearchTest, takesAnAnswerForTheSameTextWhicheverSearchItIsOf)
{
    open();
    search("hap");
    key(Qt::Key_Backspace);
    ASSERT_THAT(engine->searchedTexts(),
                ElementsAre(QStringLiteral("ha"), QStringLiteral("hap"), QStringLiteral("ha")));
    engine->answer(2, found(QStringLiteral("second")), {});
    EXPECT_EQ(shown(), foundIds(QStringLiteral("second")));
    engine->answer(0, found(QStringLiteral("first")), {});
    EXPECT_EQ(shown(), foundIds(QStringLiteral("first")));
    engine->answer(1, found(QStringLiteral("longer")), {});
    EXPECT_EQ(shown(), foundIds(QStringLiteral("first")));
}

TEST_F(ContentViewSearchTest, takesALateAnswerForTheTermThatTheHostHadSet)
{
    open();
    setHostTerm(QStringLiteral("ha"));
    focusField();
    key(Qt::Key_Backspace);
    EXPECT_EQ(shown(), popular());
    engine->answer(0, found(), {QStringLiteral("happy")});
    EXPECT_EQ(shown(), foundIds());
    type("xyz");
    engine->answer(0, found(QStringLiteral("again")), {});
    EXPECT_EQ(shown(), foundIds(QStringLiteral("again"))) << "the last term of the host's goes on to count";
}

TEST_F(ContentViewSearchTest, remembersWhatWasTyped)
{
    open();
    search("happy");
    EXPECT_EQ(history(), QStringList{QStringLiteral("happy:1")});
    EXPECT_EQ(history(), QStringList());
}

TEST_F(ContentViewSearchTest, wantsTwoPersonStickersExactlyWithAFriend)
{
    setFriend(QStringLiteral("a"));
    open();
    search("ha");
    EXPECT_EQ(engine->searches[0].resultTypes, both);
    friends->clear();
    ASSERT_EQ(engine->searches.size(), 2U) << "the search is repeated";
    EXPECT_EQ(engine->searches[1].text, QStringLiteral("ha"));
    EXPECT_EQ(engine->searches[1].resultTypes, soloOnly);
    setFriend(QStringLiteral("b"));
    EXPECT_EQ(engine->searches.back().resultTypes, both);
    EXPECT_EQ(history(), QStringList{QStringLiteral("ha:1")}) << "a repetition is no search of its own";
}

// Terms from outside

TEST_F(ContentViewSearchTest, aTermThatReplacesGoesIntoTheSearchBar)
{
    open();
    setHostTerm(QStringLiteral("happy"));
    EXPECT_EQ(bar()->text(), QStringLiteral("happy"));
    EXPECT_FALSE(bar()->isFirstResponder());
    EXPECT_THAT(engine->searchedTexts(), ElementsAre(QStringLiteral("happy"))) << "once";
    EXPECT_EQ(history(), QStringList()) << "it is no search of the user's";
    engine->answer(0, found(), {QStringLiteral("hat")});
    EXPECT_EQ(shown(), foundIds());
    EXPECT_EQ(textsOf(*strip()), QStringList{QStringLiteral("hat")});
    ASSERT_EQ(completions.size(), 1U);
    EXPECT_EQ(completions[0], view->kovalins()->first());
}

TEST_F(ContentViewSearchTest, aTermThatBlendsLeavesTheSearchBarEmptyAndTheTagsAsTheyAre)
{
    open();
    search("ha");
    engine->answer(0, found(), {QStringLiteral("hat")});
    setHostTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeBlend);
    EXPECT_EQ(bar()->text(), QString());
    EXPECT_EQ(shown(), popular());
    EXPECT_EQ(textsOf(*strip()), defaultTags());
    KovalinStickerList results = found(QStringLiteral("blend"));
    results.insert(1, sticker(QStringLiteral("popular5")));
    engine->answer(1, results, {QStringLiteral("tag")});
    QStringList expected{QStringLiteral("blend0"), QStringLiteral("popular5"), QStringLiteral("blend1"),
                         QStringLiteral("blend2"), QStringLiteral("blend3")};
    for (const QString& each : popular()) {
        if (each != QStringLiteral("popular5")) {
            expected.append(each);
        }
    }
    EXPECT_EQ(shown(), expected) << "no sticker twice";
    EXPECT_EQ(textsOf(*strip()), defaultTags());
    EXPECT_EQ(completions, std::vector<KovalinStickerPtr>{results.first()});
}

TEST_F(ContentViewSearchTest, anAnswerOfNothingBlendsToAListOfItsOwn)
{
    open();
    setHostTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeBlend);
    engine->answer(0, {}, {});
    EXPECT_EQ(shown(), popular());
    EXPECT_THAT(completions, ElementsAre(testing::IsNull()));
    tapTile(*grid(), 0);
    ASSERT_EQ(delegate->selected.size(), 1U);
    EXPECT_EQ(delegate->selected[0].category, 4) << "it isn't the popular list";
}

TEST_F(ContentViewSearchTest, aShortTermThatBlendsClearsTheBarAndShowsThePopularList)
{
    open();
    search("ha");
    engine->answer(0, found(), {QStringLiteral("hat")});
    for (const QString& term : {QString(), QStringLiteral("x")}) {
        setHostTerm(term, QXSDKKovalinSearchModeBlend);
        EXPECT_EQ(bar()->text(), QString());
        EXPECT_EQ(shown(), popular());
        EXPECT_EQ(textsOf(*strip()), defaultTags());
    }
    EXPECT_THAT(completions, ElementsAre(testing::IsNull(), testing::IsNull())) << "at once";
    EXPECT_EQ(engine->searches.size(), 1U);
}

TEST_F(ContentViewSearchTest, aShortTermThatReplacesShowsThePopularListToo)
{
    open();
    search("ha");
    engine->answer(0, found(), {QStringLiteral("hat")});
    setHostTerm(QStringLiteral("x"));
    EXPECT_EQ(bar()->text(), QStringLiteral("x"));
    EXPECT_EQ(shown(), popular());
    EXPECT_THAT(completions, ElementsAre(testing::IsNull()));
}

TEST_F(ContentViewSearchTest, tellsWhoAskedAlsoOfAnAnswerThatDoesNotCount)
{
    open();
    setHostTerm(QStringLiteral("old"));
    setHostTerm(QStringLiteral("new"));
    const KovalinStickerList old = found(QStringLiteral("old"));
    engine->answer(0, old, {QStringLiteral("old")});
    EXPECT_EQ(shown(), popular());
    EXPECT_THAT(completions, ElementsAre(old.first()));
}

TEST_F(ContentViewSearchTest, searchesWithoutAnybodyWhoAsks)
{
    open();
    view->setSearchTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeReplace, QXSDKKovalinCategoryHostTerm);
    engine->answer(0, found(), {});
    view->setSearchTerm(QStringLiteral("x"), QXSDKKovalinSearchModeReplace, QXSDKKovalinCategoryHostTerm);
    EXPECT_EQ(shown(), popular());
}

TEST_F(ContentViewSearchTest, aTermFromOutsideOfAnotherCategoryIsRemembered)
{
    open();
    view->setSearchTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeReplace, QXSDKKovalinCategoryTypedText);
    EXPECT_EQ(history(), QStringList{QStringLiteral("happy:1")});
}

TEST_F(ContentViewSearchTest, aTermFromOutsideLeavesThePageOfATag)
{
    open();
    tapTag(0);
    ASSERT_TRUE(results());
    setHostTerm(QStringLiteral("happy"));
    EXPECT_FALSE(results());
    EXPECT_TRUE(grid()->isEnabled());
}

// Answers of the engine's own accord

TEST_F(ContentViewSearchTest, repeatsTheSearchOverNewPacks)
{
    open();
    search("ha");
    engine->answer(0, found(), {});
    engine->tellProcessed();
    EXPECT_THAT(engine->searchedTexts(), ElementsAre(QStringLiteral("ha"), QStringLiteral("ha")));
    engine->answer(1, found(QStringLiteral("new")), {});
    EXPECT_EQ(shown(), foundIds(QStringLiteral("new")));
    EXPECT_EQ(history(), QStringList{QStringLiteral("ha:1")});
}

TEST_F(ContentViewSearchTest, showsANewPopularListOverNewPacks)
{
    open();
    setContent(rows(2, QStringLiteral("fresh")));
    engine->tellProcessed();
    EXPECT_EQ(shown(), popular());
    EXPECT_EQ(shown().first(), QStringLiteral("fresh0"));
}

// With the engine of the library

TEST_F(FusionContentViewTest, browsesSearchesAndGoesBack)
{
    openWithPacks();
    EXPECT_EQ(textsOf(*strip()), QStringList({QStringLiteral("Popular"), QStringLiteral("Happy")}));
    EXPECT_EQ(shown(), popular());
    search("hap");
    ASSERT_TRUE(waitFor([this] { return shown().contains(QStringLiteral("smile")); }));
    EXPECT_THAT(textsOf(*strip()), testing::Contains(QStringLiteral("happy")));
    type("zzz");
    ASSERT_TRUE(waitFor([this] { return shown().isEmpty(); }));
    EXPECT_FALSE(noResultsOf(*strip())->isHidden());
    for (int i = 0; i < 5; ++i) {
        key(Qt::Key_Backspace);
    }
    EXPECT_EQ(shown(), popular());
}

TEST_F(FusionContentViewTest, opensThePageOfAPacksTitle)
{
    openWithPacks();
    tapTag(1);
    ASSERT_TRUE(results());
    EXPECT_EQ(resultsGrid()->numberOfItems(), 2);
}

} // namespace
