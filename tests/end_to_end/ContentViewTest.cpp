// The picker's main view as a host's user has it: stickers, tags and the model of the development server, in a window.
#include "end_to_end/ContentHost.h"
#include "end_to_end/StartingHost.h"
#include "kits/core/default/QXSDKHttpDynamicConfigManager.h"
#include "picker/content/ContentViewParts.h"
#include "picker/content/RecordingContentDelegate.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/ui/Button.h"
#include "platform/ui/ImageView.h"
#include "search/QXSDKKovalinFusionSearchEngine.h"
#include "search/QXSDKKovalinLearnedSearchConfig.h"
#include "search/QXSDKKovalinLearnedSearchEngine.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"
#include "support/QtPrinting.h"
#include "support/ViewWindow.h"
#include "support/WaitFor.h"

#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <algorithm>

namespace kovalin::test {
namespace {

using namespace platform;
using backend::AnswerRule;
using Cell = QXSDKKovalinStickerCollectionViewCell;

constexpr QSize windowSize(412, 700);
constexpr QPointF inField(200, 20);

class ContentView : public ContentHost {
protected:
    ~ContentView() override
    {
        if (picker) {
            picker->setNavbarOffset(0); // a pending return holds the view
        }
        QXSDKDynamicConfigManager::setShared(nullptr);
    }

    /// Logs in, loads the content and the model, and shows the picker as a host's view manager does.
    void open()
    {
        logIn();
        const auto configs = std::make_shared<QXSDKHttpDynamicConfigManager>();
        QXSDKDynamicConfigManager::setShared(configs);
        bool isConfigured = false;
        configs->updateIfNecessary([&](bool) { dispatchMain([&isConfigured] { isConfigured = true; }); });
        ASSERT_TRUE(waitFor([&] { return isConfigured; }));

        const auto learned = std::make_shared<QXSDKKovalinLearnedSearchEngine>();
        engine = std::make_shared<QXSDKKovalinFusionSearchEngine>(std::make_shared<QXSDKKovalinPrefixSearchEngine>(),
                                                                  learned,
                                                                  std::make_shared<QXSDKKovalinLearnedSearchConfig>());
        provider->addDataUpdateObserver(engine);
        load();
        picker = QXSDKKovalinStickerPickerContentView::create(QRectF(QPointF(), windowSize), friends,
                                                              std::make_shared<QXSDKKovalinStickerPickerConfig>(),
                                                              {engine, engine, provider, pictures});
        picker->setBackgroundColor(Qt::white);
        picker->setDelegate(delegate);
        window.root()->addSubview(picker);
        picker->showPopularKovalinsAndDefaultTagTiles();
        ASSERT_FALSE(window.grab().isNull());
        ASSERT_TRUE(waitFor([&] { return learned->isInitialized() && !tags().isEmpty(); }));
    }

    [[nodiscard]] CollectionView& grid() const { return *gridOf(*picker); }
    [[nodiscard]] std::shared_ptr<KovalinSearchBarView> bar() const { return barOf(*picker); }
    [[nodiscard]] QStringList tags() const { return textsOf(*stripOf(*picker)); }
    [[nodiscard]] QStringList shown() const { return comicIdsOf(*picker->kovalins()); }
    /// Of those that are shown without a friend.
    [[nodiscard]] QStringList popular() const
    {
        KovalinStickerList alone = *provider->popularKovalins();
        alone.removeIf([](const KovalinStickerPtr& sticker) { return sticker->isFriendvalin(); });
        return comicIdsOf(alone);
    }
    /// By what its address says.
    [[nodiscard]] bool shows(const QString& templateId) const
    {
        return std::ranges::any_of(*picker->kovalins(), [&](const KovalinStickerPtr& sticker) {
            return sticker->url().value_or(QString()).contains(QStringLiteral("/%1/").arg(templateId));
        });
    }

    [[nodiscard]] static bool everyVisible(const CollectionView& list, const std::function<bool(const Cell&)>& holds)
    {
        const auto items = list.indexPathsForVisibleItems();
        return !items.isEmpty() && std::ranges::all_of(items, [&](qsizetype item) {
            const auto cell = std::static_pointer_cast<Cell>(list.cellForItemAtIndexPath(item));
            return cell && holds(*cell);
        });
    }
    bool becomesLoaded(const CollectionView& list)
    {
        return waitFor([&] {
            window.grab();
            return everyVisible(list, [](const Cell& tile) { return tile.isLoaded(); });
        });
    }
    bool becomesLoaded() { return becomesLoaded(grid()); }

    void tap(const QPointF& point) { window.tap(point); }
    /// Of what is on screen.
    void tapTile(const CollectionView& list, qsizetype item)
    {
        tap(list.frameOfItem(item).center() - list.contentOffset());
    }
    void tapTag(qsizetype item)
    {
        window.grab();
        const auto strip = stripOf(*picker);
        tap(middleOfPill(*strip, item) + strip->frame().topLeft());
        window.grab();
    }
    void type(const char* text)
    {
        for (; *text != '\0'; ++text) {
            QTest::keyClick(&window.window(), *text);
        }
    }
    void search(const char* text)
    {
        tap(inField);
        type(text);
    }

    /// Where models go is looked up once for the process, so that all tests which load one share a folder. Empties it.
    const HostHere modelFolder;

    ViewWindow window{windowSize};
    std::shared_ptr<QXSDKKovalinFusionSearchEngine> engine;
    std::shared_ptr<RecordingContentDelegate> delegate = std::make_shared<RecordingContentDelegate>();
    std::shared_ptr<QXSDKKovalinStickerPickerContentView> picker;
};

TEST_F(ContentView, ShowsThePopularStickersAndTheTitlesOfThePacks)
{
    open();
    ASSERT_TRUE(becomesLoaded());
    EXPECT_EQ(shown(), popular());
    EXPECT_EQ(tags(), provider->defaultTags());
    EXPECT_THAT(tags(), testing::Contains(QStringLiteral("Love")));
    EXPECT_EQ(delegate->startTimes, std::vector<double>{picker->coldStartTime()});
    const auto first = std::static_pointer_cast<Cell>(grid().cellForItemAtIndexPath(0));
    EXPECT_EQ(first->frame().size(), QSizeF(101, 101));
    EXPECT_EQ(first->imageView()->image().size(), QSize(320, 320));
    EXPECT_LE(requestsFor("/stickers/"), 4 * 9) << "what is on screen and the row below it";
}

TEST_F(ContentView, PushesItsBarsAwayAndLoadsWhatIsScrolledTo)
{
    open();
    ASSERT_TRUE(becomesLoaded());
    picker->setKovalins(std::make_shared<const KovalinStickerList>(
        engine->searchWithExactMatch(QStringLiteral("Good Vibes"), {QXSDKKovalinSearchResultTypeSolovalin}) +
        *picker->kovalins()));
    ASSERT_TRUE(becomesLoaded());
    window.press({200, 600});
    for (int y = 590; y > 100; y -= 10) {
        window.move({200, double(y)});
    }
    EXPECT_EQ(picker->navbarOffset(), 80);
    window.grab();
    EXPECT_EQ(stripOf(*picker)->frame().top(), -40);
    window.release({200, 100});
    EXPECT_THAT(delegate->selected, testing::IsEmpty()) << "a drag is no tap";
    ASSERT_TRUE(waitFor([this] { return !grid().isMoving(); }));
    ASSERT_TRUE(becomesLoaded());
}

TEST_F(ContentView, GivesThePopularStickerThatIsTapped)
{
    open();
    ASSERT_TRUE(becomesLoaded());
    tapTile(grid(), 1);
    ASSERT_EQ(delegate->selected.size(), 1U);
    EXPECT_EQ(delegate->selected[0].sticker->comicId(), popular().at(1));
    EXPECT_EQ(delegate->selected[0].image.size(), QSize(320, 320));
    EXPECT_EQ(delegate->selected[0].category, 0);
    EXPECT_EQ(delegate->selected[0].terms, QStringList());
}

TEST_F(ContentView, FindsWhatIsTypedByTagsAndByTheModel)
{
    open();
    search("hello");
    ASSERT_TRUE(waitFor([&] { return shown() != popular(); }));
    EXPECT_TRUE(shows(QStringLiteral("hello-wave")));
    ASSERT_TRUE(becomesLoaded());

    tap({double(windowSize.width()) - 20, 20}); // the button that clears
    EXPECT_EQ(bar()->text(), QString());
    EXPECT_EQ(shown(), popular());
    EXPECT_EQ(tags(), provider->defaultTags());

    type("giddy up"); // which is no tag
    ASSERT_TRUE(waitFor([&] { return shows(QStringLiteral("howdy")); }));
    ASSERT_TRUE(becomesLoaded());
    tapTile(grid(), 0);
    ASSERT_EQ(delegate->selected.size(), 1U);
    EXPECT_EQ(delegate->selected[0].category, 1);
    EXPECT_THAT(delegate->selected[0].terms, testing::Contains(QStringLiteral("giddy up:1")));
}

TEST_F(ContentView, OpensATagGivesItsStickersAndGoesBack)
{
    open();
    const auto love = tags().indexOf(QStringLiteral("Love"));
    ASSERT_GE(love, 0);
    tapTag(love);
    const auto page = resultsOf(*picker);
    ASSERT_TRUE(page);
    CollectionView& list = *gridOf(*page);
    ASSERT_TRUE(becomesLoaded(list));
    tapTile(list, 0);
    ASSERT_EQ(delegate->selected.size(), 1U);
    EXPECT_EQ(delegate->selected[0].category, 3);
    EXPECT_EQ(delegate->selected[0].terms, QStringList{QStringLiteral("Love:3")});
    EXPECT_EQ(delegate->selected[0].image.size(), QSize(320, 320));
    tap(headerOf(*page)->backButton()->frame().center());
    EXPECT_FALSE(resultsOf(*picker));
    EXPECT_EQ(shown(), popular());
}

TEST_F(ContentView, FindsAndDrawsStickersWithAFriend)
{
    open();
    search("hug");
    ASSERT_TRUE(waitFor([&] { return shown() != popular(); }));
    EXPECT_FALSE(shows(QStringLiteral("big-hug"))) << "without a friend";
    friends->setFriendUserIds({QStringLiteral("user-1")}, 0);
    ASSERT_TRUE(waitFor([&] { return shows(QStringLiteral("big-hug")); })) << "the search is repeated";
    ASSERT_TRUE(becomesLoaded());
    const auto requests = server.requests();
    EXPECT_TRUE(std::ranges::any_of(requests, [](const auto& request) {
        return request.path.startsWith("/stickers/big-hug/") && request.path.contains("bea-2");
    }));
    friends->clear();
    ASSERT_TRUE(waitFor([&] { return !shows(QStringLiteral("big-hug")); }));
}

TEST_F(ContentView, BlendsATermOfTheHostsIntoThePopularStickers)
{
    open();
    KovalinStickerPtr preview;
    picker->setSearchTerm(QStringLiteral("love you"), QXSDKKovalinSearchModeBlend, QXSDKKovalinCategoryHostTerm,
                          [&](const KovalinStickerPtr& sticker) { preview = sticker; });
    ASSERT_TRUE(waitFor([&] { return preview != nullptr; }));
    EXPECT_EQ(bar()->text(), QString());
    EXPECT_EQ(tags(), provider->defaultTags());
    EXPECT_EQ(picker->kovalins()->first(), preview);
    EXPECT_GE(shown().size(), popular().size());
    QStringList once = shown();
    EXPECT_EQ(once.removeDuplicates(), 0) << "no sticker twice";
    ASSERT_TRUE(becomesLoaded());
}

TEST_F(ContentView, SaysSoWhereNothingIsFound)
{
    open();
    search("xyzzyq");
    ASSERT_TRUE(waitFor([&] { return shown().isEmpty(); }));
    EXPECT_FALSE(noResultsOf(*stripOf(*picker))->isHidden());
}

TEST_F(ContentView, TakesWhatIsTypedOverTheStickersToTheBar)
{
    open();
    grid().forceActiveFocus(Qt::TabFocusReason);
    type("hi");
    EXPECT_TRUE(bar()->isFirstResponder());
    EXPECT_EQ(bar()->text(), QStringLiteral("hi"));
}

TEST_F(ContentView, ShowsFailuresAndLoadsThemAllAtOneTap)
{
    answer("/stickers/*", AnswerRule{.kind = AnswerRule::Kind::Status, .status = 500});
    open();
    ASSERT_TRUE(waitFor([this] {
        return everyVisible(grid(), [](const Cell& tile) { return !tile.isLoading() && !tile.isLoaded(); });
    }));
    EXPECT_THAT(delegate->startTimes, testing::IsEmpty());
    answer("/stickers/*", AnswerRule{});
    tapTile(grid(), 1);
    EXPECT_TRUE(becomesLoaded());
    EXPECT_THAT(delegate->selected, testing::IsEmpty());
}

TEST_F(ContentView, WaitsForASilentServerAndGoesWhileItDoes)
{
    answer("/stickers/*", AnswerRule{.kind = AnswerRule::Kind::Nothing});
    open();
    EXPECT_TRUE(everyVisible(grid(), [](const Cell& tile) { return tile.isLoading(); }));
    tapTile(grid(), 1);
    EXPECT_THAT(delegate->selected, testing::IsEmpty());
    const std::weak_ptr<QXSDKKovalinStickerPickerContentView> gone = picker;
    picker->removeFromSuperview();
    picker.reset();
    drainMainQueue();
    EXPECT_TRUE(gone.expired());
    answer("/stickers/*", AnswerRule{});
    drainMainQueue();
}

} // namespace
} // namespace kovalin::test
