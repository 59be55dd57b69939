#include "picker/content/FusionContentViewTest.h"

// A content view goes at any moment, also at the word of those whom it tells.

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;

namespace {

template <class Test>
class WithLifetime : public Test {
protected:
    using Test::delegate;
    using Test::view;

    void letGo()
    {
        gone = view;
        view->removeFromSuperview();
        view.reset();
    }
    /// Lets the view go when the delegate is told the next time.
    void letGoWhenTold()
    {
        delegate->then = [this] {
            if (view) {
                letGo();
            }
        };
    }
    void expectGone()
    {
        drainMainQueue();
        EXPECT_TRUE(gone.expired());
        EXPECT_EQ(view, nullptr);
    }

    std::weak_ptr<QXSDKKovalinStickerPickerContentView> gone;
};

using ContentViewLifetimeTest = WithLifetime<ContentViewTest>;
using FusionContentViewLifetimeTest = WithLifetime<FusionContentViewTest>;

TEST_F(ContentViewLifetimeTest, mayGoDuringASearchAndWhoAskedIsStillTold)
{
    open();
    std::vector<KovalinStickerPtr> told;
    view->setSearchTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeReplace, QXSDKKovalinCategoryHostTerm,
                        [&](const KovalinStickerPtr& sticker) { told.push_back(sticker); });
    letGo();
    expectGone();
    const KovalinStickerList found = rows(1);
    engine->answer(0, found, {});
    EXPECT_EQ(told, std::vector<KovalinStickerPtr>{found.first()});
}

TEST_F(ContentViewLifetimeTest, mayGoWhenWhoAskedIsTold)
{
    open();
    const auto completion = [this](const KovalinStickerPtr&) {
        letGo();
    };
    view->setSearchTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeBlend, QXSDKKovalinCategoryHostTerm, completion);
    engine->answer(0, rows(1), {});
    expectGone();

    open();
    view->setSearchTerm(QStringLiteral("x"), QXSDKKovalinSearchModeBlend, QXSDKKovalinCategoryHostTerm, completion);
    expectGone();
}

TEST_F(ContentViewLifetimeTest, mayGoWhilePicturesAreOnTheirWay)
{
    setContent({sticker(QStringLiteral("held"), "/held")});
    open();
    letGo();
    expectGone();
    pictures.server.release("/held");
    pictures.drain();
}

TEST_F(ContentViewLifetimeTest, mayGoInTheMidstOfAChange)
{
    open();
    search("ha");
    engine->answer(0, rows(2, QStringLiteral("found")), {QStringLiteral("hat")});
    driver.step(0ms);
    driver.step(100ms);
    letGo();
    expectGone();
    driver.step(1s);
}

TEST_F(ContentViewLifetimeTest, mayGoWhenAStickerIsTapped)
{
    open();
    ASSERT_TRUE(isLoaded(*grid(), 0));
    letGoWhenTold();
    tap(grid()->frameOfItem(0).center() - grid()->contentOffset());
    EXPECT_EQ(delegate->selected.size(), 1U);
    expectGone();
}

TEST_F(ContentViewLifetimeTest, mayGoWhenItsFocusChanges)
{
    open();
    letGoWhenTold();
    focusField();
    expectGone();

    delegate->then = {};
    open();
    focusField();
    letGoWhenTold();
    key(Qt::Key_Return);
    expectGone();
}

TEST_F(ContentViewLifetimeTest, mayGoWhenTheFocusGoesForAStickerOrATag)
{
    open();
    focusField();
    ASSERT_TRUE(isLoaded(*grid(), 0));
    letGoWhenTold();
    tap(grid()->frameOfItem(0).center() - grid()->contentOffset());
    expectGone();

    delegate->then = {};
    open();
    focusField();
    settle();
    letGoWhenTold();
    tap(middleOfPill(*strip(), 0) + strip()->frame().topLeft());
    expectGone();
}

TEST_F(ContentViewLifetimeTest, mayGoWhenATagIsTapped)
{
    open();
    letGoWhenTold();
    tap(middleOfPill(*strip(), 0) + strip()->frame().topLeft());
    expectGone();
}

TEST_F(ContentViewLifetimeTest, mayGoWhenAStickerOfATagIsTapped)
{
    open();
    engine->stickersByTag = {{QStringLiteral("Popular"), rows(1)}};
    tapTag(0);
    settle();
    ASSERT_TRUE(isLoaded(*resultsGrid(), 0));
    letGoWhenTold();
    tap(resultsGrid()->frameOfItem(0).center() - resultsGrid()->contentOffset());
    expectGone();
}

TEST_F(ContentViewLifetimeTest, mayGoWithThePageOfATagOnShow)
{
    open();
    tapTag(0);
    const std::weak_ptr<QXSDKKovalinTagResultsView> page = results();
    letGo();
    expectGone();
    EXPECT_TRUE(page.expired());
    setFriend(QStringLiteral("a"));
    engine->tellProcessed();
}

TEST_F(ContentViewLifetimeTest, staysUntilItsBarsHaveComeBack)
{
    setContent(rows(20));
    open();
    scrollTo(30);
    letGo();
    drainMainQueue();
    const auto kept = gone.lock();
    ASSERT_TRUE(kept);
    kept->setNavbarOffset(0); // as the return does
}

TEST_F(ContentViewLifetimeTest, hundredViewsComeAndGoAtAnyStage)
{
    for (int round = 0; round < 100; ++round) {
        make();
        const int stage = round % 6;
        if (stage > 0) {
            view->showPopularKovalinsAndDefaultTagTiles();
        }
        if (stage > 1) {
            driver.step(50ms);
            grab();
            search("ha");
        }
        if (stage > 2) {
            engine->answer(engine->searches.size() - 1, rows(1, QStringLiteral("found")), {QStringLiteral("hat")});
            driver.step(50ms);
        }
        if (stage > 3) {
            tapTag(0);
        }
        if (stage > 4) {
            setFriend(QString::number(round));
        }
        letGo();
        expectGone();
    }
}

// With the engine and the threads of the library

TEST_F(FusionContentViewLifetimeTest, goesAtEachPointOfASearchADownloadAndAnAnimation)
{
    constexpr int rounds = 120;
    int completions = 0;
    for (int round = 0; round < rounds; ++round) {
        show();
        if (round % 10 == 0) {
            fusion->contentDidLoadWithPacks(packs); // the index is built while the view searches, and goes
        }
        search("hap");
        view->setSearchTerm(QStringLiteral("smile"), QXSDKKovalinSearchModeBlend, QXSDKKovalinCategoryHostTerm,
                            [&completions](const KovalinStickerPtr&) { ++completions; });
        for (int turn = 0; turn < round % 12; ++turn) {
            QCoreApplication::processEvents();
            driver.step(20ms);
            grab();
        }
        letGo();
        expectGone();
    }
    EXPECT_TRUE(waitFor([&] { return completions == rounds; })) << completions;
    pictures.drain();
}

} // namespace
