#include "picker/tags/QXSDKKovalinTagResultsView.h"

#include "content/QXSDKKovalinFriendCache.h"
#include "content/QXSDKKovalinFriendState.h"
#include "picker/grid/GridTest.h"
#include "picker/tags/QXSDKKovalinTagHeaderView.h"
#include "picker/tags/TagViews.h"
#include "platform/ui/Button.h"
#include "support/QtPrinting.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <QtCore/QUuid>
#include <QtGui/QGuiApplication>

#include <gmock/gmock.h>

#include <functional>
#include <string>

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;
using Page = QXSDKKovalinTagResultsView;

namespace {

class RecordingDelegate final : public QXSDKKovalinTagResultsViewDelegate {
public:
    struct Selected {
        KovalinStickerPtr sticker;
        QImage image;
        QXSDKTagTilePtr tagTile;
    };
    void kovalinTagResultsViewDidSelectKovalinWithURL(const KovalinStickerPtr& sticker, const QImage& image,
                                                      const QXSDKTagTilePtr& tagTile) override
    {
        selected.push_back({sticker, image, tagTile});
    }
    void kovalinTagResultsViewDidTapCancel() override { note("cancel"); }
    void kovalinTagResultsViewDidTapBack() override { note("back"); }

    std::vector<Selected> selected;
    std::vector<std::string> told;
    std::function<void()> then;

private:
    void note(const char* what)
    {
        told.emplace_back(what);
        if (then) {
            then();
        }
    }
};

class QXSDKKovalinTagResultsViewTest : public GridTest {
protected:
    ~QXSDKKovalinTagResultsViewTest() override
    {
        if (page) {
            page->setNavbarOffset(0); // a pending return holds the page
        }
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    }

    void open(const Page::List& stickers)
    {
        page =
            Page::create(shown, stickers, friends, std::make_shared<QXSDKKovalinStickerPickerConfig>(), pictures.cache);
        page->setDelegate(recorder);
        page->setFrame(root()->bounds());
        root()->addSubview(page);
        grab();
    }
    [[nodiscard]] std::shared_ptr<CollectionView> gridView() const
    {
        return std::dynamic_pointer_cast<CollectionView>(page->subviews().at(0));
    }
    [[nodiscard]] std::shared_ptr<QXSDKKovalinTagHeaderView> header() const
    {
        return std::dynamic_pointer_cast<QXSDKKovalinTagHeaderView>(page->subviews().at(1));
    }
    [[nodiscard]] std::shared_ptr<Cell> tileAt(qsizetype item) const
    {
        return std::dynamic_pointer_cast<Cell>(gridView()->cellForItemAtIndexPath(item));
    }
    [[nodiscard]] bool isLoaded(qsizetype item)
    {
        return waitFor([&] { return tileAt(item) && tileAt(item)->isLoaded(); });
    }
    [[nodiscard]] QPointF placeOf(qsizetype item) const
    {
        return gridView()->frameOfItem(item).center() - gridView()->contentOffset();
    }
    /// So that the list has scrolled by `top` points from its rest at the top.
    void scrollTo(double top)
    {
        gridView()->setContentOffset({-4, top - 44}, false);
        grab();
    }
    /// A friend whose avatar is known.
    void setFriend(const QString& avatarId)
    {
        const QString user = QUuid::createUuid().toString();
        QXSDKKovalinFriendCache::shared()->updateWithData({{user, avatarId}});
        friends->setFriendUserIds({user}, 0);
    }

    QXSDKKovalinStickerPickerSessionManager sessions;
    std::shared_ptr<QXSDKKovalinFriendState> friends = QXSDKKovalinFriendState::create(sessions);
    QXSDKTagTilePtr shown = tile(QStringLiteral("happy"), Qt::green);
    std::shared_ptr<RecordingDelegate> recorder = std::make_shared<RecordingDelegate>();
    std::shared_ptr<Page> page;
};

TEST_F(QXSDKKovalinTagResultsViewTest, showsItsListBelowItsHeader)
{
    open(rows(3));
    ASSERT_EQ(page->subviews().size(), 2);
    EXPECT_EQ(gridView()->frame(), QRectF(0, 0, width, height));
    EXPECT_EQ(header()->frame(), QRectF(0, 0, width, 40));
    EXPECT_EQ(gridView()->contentInset(), QMarginsF(4, 44, 4, 4));
    EXPECT_EQ(gridView()->scrollIndicatorInsets().top(), 40);
    EXPECT_EQ(gridView()->numberOfItems(), 12);
    EXPECT_EQ(page->scrollView(), gridView());
    EXPECT_EQ(page->maxNavbarOffset(), 40);
    EXPECT_EQ(page->backgroundColor(), QXSDKKovalinStickerPickerTheme().backgroundColor());
}

TEST_F(QXSDKKovalinTagResultsViewTest, showsTheListAsItIsAlsoWithTwoPersonStickersAndNoFriend)
{
    open(list({sticker("/red"), friendSticker("/two")}));
    EXPECT_EQ(gridView()->numberOfItems(), 2);
    EXPECT_TRUE(isLoaded(0));
    EXPECT_EQ(tileAt(1)->imageURL(), std::nullopt);
}

TEST_F(QXSDKKovalinTagResultsViewTest, showsAnEmptyListAsAnEmptyPage)
{
    open(list({}));
    EXPECT_EQ(gridView()->numberOfItems(), 0);
    open(nullptr);
    EXPECT_EQ(gridView()->numberOfItems(), 0);
}

TEST_F(QXSDKKovalinTagResultsViewTest, drawsTwoPersonStickersWithTheFriendThatIsKnown)
{
    setFriend(QStringLiteral("a"));
    pictures.script("/two/a", Qt::yellow);
    open(list({friendSticker("/two")}));
    EXPECT_TRUE(isLoaded(0));
    EXPECT_EQ(tileAt(0)->imageURL(), pictures.url("/two/a"));
}

TEST_F(QXSDKKovalinTagResultsViewTest, followsTheFriend)
{
    setFriend(QStringLiteral("a"));
    pictures.script("/two/a", Qt::yellow);
    pictures.script("/two/b", Qt::blue);
    open(list({sticker("/red"), friendSticker("/two")}));
    ASSERT_TRUE(isLoaded(1));
    setFriend(QStringLiteral("b"));
    EXPECT_EQ(tileAt(1)->imageURL(), pictures.url("/two/b"));
    ASSERT_TRUE(isLoaded(1));
    friends->clear();
    EXPECT_EQ(gridView()->numberOfItems(), 1) << "without a friend they go";
}

TEST_F(QXSDKKovalinTagResultsViewTest, tellsWhichStickerWasTappedWithItsPictureAndTheTile)
{
    const auto red = sticker("/red");
    open(list({red}));
    tap(placeOf(0));
    EXPECT_THAT(recorder->selected, IsEmpty()) << "it has no picture yet";
    ASSERT_TRUE(isLoaded(0));
    tap(placeOf(0));
    ASSERT_EQ(recorder->selected.size(), 1U);
    EXPECT_EQ(recorder->selected[0].sticker, red);
    EXPECT_EQ(recorder->selected[0].image.cacheKey(), tileAt(0)->imageView()->image().cacheKey());
    EXPECT_EQ(recorder->selected[0].tagTile, shown);
    EXPECT_THAT(recorder->told, IsEmpty());
}

TEST_F(QXSDKKovalinTagResultsViewTest, leadsBackByTheButtonAndByTheRestOfTheHeader)
{
    open(rows(1));
    tap(header()->backButton()->frame().center());
    EXPECT_THAT(recorder->told, ElementsAre("back"));
    tap({160, 20});
    EXPECT_THAT(recorder->told, ElementsAre("back", "back"));
    tap(header()->subviews().at(3)->frame().center());
    EXPECT_THAT(recorder->told, ElementsAre("back", "back", "back")) << "the pill";
}

TEST_F(QXSDKKovalinTagResultsViewTest, leadsAwayByTheOtherButtonAlone)
{
    open(rows(1));
    tap(header()->cancelButton()->frame().center());
    EXPECT_THAT(recorder->told, ElementsAre("cancel"));
}

TEST_F(QXSDKKovalinTagResultsViewTest, isWorkedByKeys)
{
    open(rows(1));
    header()->backButton()->forceActiveFocus(Qt::TabFocusReason);
    QTest::keyClick(&window(), Qt::Key_Return);
    header()->cancelButton()->forceActiveFocus(Qt::TabFocusReason);
    QTest::keyClick(&window(), Qt::Key_Space);
    EXPECT_THAT(recorder->told, ElementsAre("back", "cancel"));
}

TEST_F(QXSDKKovalinTagResultsViewTest, pushesItsHeaderAwayAsItScrolls)
{
    open(rows(9));
    scrollTo(25);
    EXPECT_EQ(page->navbarOffset(), 25);
    EXPECT_EQ(header()->frame(), QRectF(0, -25, width, 40));
    scrollTo(300);
    EXPECT_EQ(header()->frame().y(), -40);
    scrollTo(290);
    EXPECT_EQ(header()->frame().y(), -30);
    EXPECT_EQ(gridView()->frame(), QRectF(0, 0, width, height));
}

TEST_F(QXSDKKovalinTagResultsViewTest, isMirroredWhereReadingBeginsAtTheRight)
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    open(list({sticker("/red"), sticker("/blue")}));
    EXPECT_EQ(gridView()->frameOfItem(0), QRectF(234, 0, 78, 78));
    tap(QPointF(width - 15, 20));
    tap({20, 20});
    EXPECT_THAT(recorder->told, ElementsAre("back", "cancel"));
}

TEST_F(QXSDKKovalinTagResultsViewTest, mayGoWhenAnyOfItsWaysOutIsTaken)
{
    for (const QPointF& way : {QPointF(15, 20), QPointF(width - 20, 20), QPointF(160, 20)}) {
        open(rows(9));
        const std::weak_ptr<Page> gone = page;
        recorder->then = [this] {
            page->removeFromSuperview();
            page.reset();
        };
        tap(way);
        EXPECT_TRUE(gone.expired());
        drainMainQueue();
    }
    EXPECT_EQ(recorder->told.size(), 3U);
}

TEST_F(QXSDKKovalinTagResultsViewTest, mayGoWhilePicturesAreOnTheirWay)
{
    open(list({sticker("/held"), sticker("/red")}));
    const std::weak_ptr<Page> gone = page;
    page->removeFromSuperview();
    page.reset();
    EXPECT_TRUE(gone.expired());
    pictures.server.release("/held");
    pictures.drain();
    friends->clear();
}

TEST_F(QXSDKKovalinTagResultsViewTest, itsPartsTellNobodyOnceItHasGone)
{
    open(rows(1));
    const auto left = header();
    page->removeFromSuperview();
    page.reset();
    drainMainQueue();
    root()->addSubview(left);
    grab();
    tap(left->backButton()->frame().center());
    tap({160, 20});
    EXPECT_THAT(recorder->told, IsEmpty());
}

} // namespace
