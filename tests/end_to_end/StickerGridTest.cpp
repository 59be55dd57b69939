// The grid with its search bar as a host's user has them: real stickers of the development server in a window.
#include "end_to_end/ContentHost.h"
#include "picker/bars/KovalinSearchBarView.h"
#include "picker/grid/QXSDKKovalinStickerGridController.h"
#include "platform/ui/ImageView.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"
#include "support/ViewWindow.h"
#include "support/WaitFor.h"

#include <QtTest/QTest>

#include <algorithm>

namespace kovalin::test {
namespace {

using namespace platform;
using backend::AnswerRule;
using Cell = QXSDKKovalinStickerCollectionViewCell;

constexpr double barHeight = 40;

/// What a picker does with a bar and a grid: searches as the user types, and gives the bar what is typed over the grid.
class SearchedGrid final : public View,
                           public KovalinSearchBarViewDelegate,
                           public QXSDKKovalinStickerGridControllerDelegate {
public:
    explicit SearchedGrid(const std::shared_ptr<QXSDKKovalinCache>& pictures)
        : grid(
              QXSDKKovalinStickerGridController::create(std::make_shared<const KovalinStickerList>(), config, pictures))
        , bar(makeView<KovalinSearchBarView>(QRectF(), config))
    {
        setBackgroundColor(config->theme()->backgroundColor());
        grid->setTopInset(static_cast<int>(barHeight));
        addSubview(grid->view());
        addSubview(bar);
    }

    void layoutSubviews() override
    {
        grid->view()->setFrame(bounds());
        bar->setFrame({0, 0, bounds().width(), barHeight});
    }
    void keyPressEvent(QKeyEvent* event) override { event->setAccepted(bar->acceptKeyPress(*event)); }

    void showPopular() { grid->setKovalins(popular); }

    void searchBarViewDidChangeSearchText(KovalinSearchBarView&, const QString& text) override
    {
        if (text.isEmpty()) {
            showPopular();
            return;
        }
        engine.search(text, {QXSDKKovalinSearchResultTypeSolovalin},
                      [weakSelf = weak_from_this(), text](const KovalinStickerList& found, const QStringList&) {
                          const auto self = std::static_pointer_cast<SearchedGrid>(weakSelf.lock());
                          if (self && self->bar->text() == text) {
                              self->grid->setKovalins(std::make_shared<const KovalinStickerList>(found));
                          }
                      });
    }
    void searchBarViewDidBecomeFirstResponder(KovalinSearchBarView&) override {}
    void searchBarViewDidResignFirstResponder(KovalinSearchBarView&) override {}

    void stickerGridControllerDidSelectSticker(const KovalinStickerPtr& sticker, const QImage& image) override
    {
        chosen = sticker;
        chosenImage = image;
    }
    void stickerGridControllerDidScroll(ScrollView&) override {}
    void stickerGridControllerDidRenderFirstSticker() override { ++firstRenders; }

    const QXSDKKovalinStickerPickerConfigPtr config = std::make_shared<QXSDKKovalinStickerPickerConfig>();
    const std::shared_ptr<QXSDKKovalinStickerGridController> grid;
    const std::shared_ptr<KovalinSearchBarView> bar;
    QXSDKKovalinPrefixSearchEngine engine;
    KovalinStickerListPtr popular;
    KovalinStickerPtr chosen;
    QImage chosenImage;
    int firstRenders = 0;
};

class StickerGrid : public ContentHost {
protected:
    void open()
    {
        logIn();
        load();
        picker = makeView<SearchedGrid>(pictures);
        picker->grid->setDelegate(picker);
        picker->bar->setDelegate(picker);
        picker->popular = std::make_shared<const KovalinStickerList>(allStickers());
        bool isBuilt = false;
        picker->engine.processPacks(*provider->packs(), [&isBuilt] { isBuilt = true; });
        ASSERT_TRUE(waitFor([&] { return isBuilt; }));
        picker->setFrame({0, 0, 412, 700});
        window.root()->addSubview(picker);
        picker->showPopular();
        ASSERT_FALSE(window.grab().isNull());
    }

    [[nodiscard]] KovalinStickerList allStickers() const
    {
        KovalinStickerList all;
        const auto packs = provider->packs();
        for (const auto& pack : *packs) {
            all += pack->stickers();
        }
        return all;
    }
    [[nodiscard]] CollectionView& view() const { return *picker->grid->view(); }
    [[nodiscard]] std::shared_ptr<Cell> cell(qsizetype item) const
    {
        return std::static_pointer_cast<Cell>(view().cellForItemAtIndexPath(item));
    }
    [[nodiscard]] bool everyVisible(const std::function<bool(const Cell&)>& holds) const
    {
        const auto items = view().indexPathsForVisibleItems();
        return !items.isEmpty() &&
               std::ranges::all_of(items, [&](qsizetype item) { return cell(item) && holds(*cell(item)); });
    }
    bool becomesLoaded()
    {
        return waitFor([this] {
            window.grab();
            return everyVisible([](const Cell& tile) { return tile.isLoaded(); });
        });
    }
    void type(const char* text)
    {
        for (; *text != '\0'; ++text) {
            QTest::keyClick(&window.window(), *text);
        }
    }

    ViewWindow window{{412, 700}};
    std::shared_ptr<SearchedGrid> picker;
};

TEST_F(StickerGrid, ShowsTheStickersOfTheServer)
{
    open();
    ASSERT_TRUE(becomesLoaded());
    EXPECT_EQ(picker->firstRenders, 1);
    EXPECT_EQ(cell(0)->frame().size(), QSizeF(101, 101));
    const auto shown = requestsFor("/stickers/");
    EXPECT_LE(shown, 4 * 9) << "what is on screen and the row below it";
    EXPECT_EQ(cell(0)->imageView()->image().size(), QSize(320, 320));
}

TEST_F(StickerGrid, LoadsWhatIsScrolledTo)
{
    open();
    ASSERT_TRUE(becomesLoaded());
    QTest::mousePress(&window.window(), Qt::LeftButton, {}, QPoint(200, 600));
    for (int y = 590; y > 100; y -= 10) {
        QTest::mouseMove(&window.window(), QPoint(200, y));
    }
    QTest::mouseRelease(&window.window(), Qt::LeftButton, {}, QPoint(200, 100));
    EXPECT_GT(view().contentOffset().y(), 300);
    EXPECT_FALSE(picker->chosen) << "a drag is no tap";
    ASSERT_TRUE(waitFor([this] { return !view().isMoving(); }));
    ASSERT_TRUE(becomesLoaded());
}

TEST_F(StickerGrid, GivesTheStickerThatIsTapped)
{
    open();
    ASSERT_TRUE(becomesLoaded());
    QTest::mouseClick(&window.window(), Qt::LeftButton, {}, QPoint(150, 100));
    ASSERT_TRUE(picker->chosen);
    EXPECT_EQ(picker->chosen->comicId(), picker->grid->kovalins()->at(1)->comicId());
    EXPECT_EQ(picker->chosenImage.size(), QSize(320, 320));
}

TEST_F(StickerGrid, ShowsWhatIsTypedForAndAllAgainWhenItIsCleared)
{
    open();
    ASSERT_TRUE(becomesLoaded());
    const auto all = picker->grid->kovalins()->size();
    QTest::mouseClick(&window.window(), Qt::LeftButton, {}, QPoint(200, 20));
    ASSERT_TRUE(picker->bar->isFirstResponder());
    type("love");
    ASSERT_TRUE(waitFor([&] { return picker->grid->kovalins()->size() < all; }));
    EXPECT_EQ(picker->bar->text(), QStringLiteral("love"));
    EXPECT_FALSE(picker->grid->kovalins()->isEmpty());
    ASSERT_TRUE(becomesLoaded());
    EXPECT_EQ(view().numberOfItems(), picker->grid->kovalins()->size());
    QTest::mouseClick(&window.window(), Qt::LeftButton, {}, QPoint(412 - 20, 20)); // the clear button
    EXPECT_EQ(picker->bar->text(), QString());
    EXPECT_EQ(picker->grid->kovalins()->size(), all);
    ASSERT_TRUE(becomesLoaded());
}

TEST_F(StickerGrid, TakesWhatIsTypedOverItToTheBar)
{
    open();
    view().forceActiveFocus(Qt::TabFocusReason);
    type("hi");
    EXPECT_TRUE(picker->bar->isFirstResponder());
    EXPECT_EQ(picker->bar->text(), QStringLiteral("hi"));
}

TEST_F(StickerGrid, ShowsFailuresAndLoadsThemAllAtOneTap)
{
    answer("/stickers/*", AnswerRule{.kind = AnswerRule::Kind::Status, .status = 500});
    open();
    ASSERT_TRUE(waitFor(
        [this] { return everyVisible([](const Cell& tile) { return !tile.isLoading() && !tile.isLoaded(); }); }));
    EXPECT_EQ(picker->firstRenders, 0);
    answer("/stickers/*", AnswerRule{});
    QTest::mouseClick(&window.window(), Qt::LeftButton, {}, QPoint(150, 200));
    EXPECT_TRUE(becomesLoaded());
    EXPECT_FALSE(picker->chosen);
}

TEST_F(StickerGrid, WaitsForASilentServerAndGoesWhileItDoes)
{
    answer("/stickers/*", AnswerRule{.kind = AnswerRule::Kind::Nothing});
    open();
    EXPECT_TRUE(everyVisible([](const Cell& tile) { return tile.isLoading(); }));
    QTest::mouseClick(&window.window(), Qt::LeftButton, {}, QPoint(150, 200));
    EXPECT_FALSE(picker->chosen);
    const std::weak_ptr<SearchedGrid> gone = picker;
    picker->removeFromSuperview();
    picker.reset();
    EXPECT_TRUE(gone.expired());
    answer("/stickers/*", AnswerRule{});
    drainMainQueue();
}

} // namespace
} // namespace kovalin::test
