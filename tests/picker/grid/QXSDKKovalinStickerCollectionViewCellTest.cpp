#include "picker/grid/CellTest.h"

#include <gmock/gmock.h>

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class QXSDKKovalinStickerCollectionViewCellTest : public CellTest {};

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, StartsIdleWithTheLoadingPicture)
{
    EXPECT_FALSE(cell->isLoading());
    EXPECT_FALSE(cell->isLoaded());
    EXPECT_EQ(cell->imageURL(), std::nullopt);
    EXPECT_FALSE(cell->task());
    EXPECT_TRUE(showsLoadingPicture());
    EXPECT_TRUE(retryIcon().isHidden());
    EXPECT_EQ(cell->objectName(), QStringLiteral("qxsdk_kovalin_sticker"));
    EXPECT_FALSE(makeView<Cell>(pictures.cache)->imageView()->image().isNull()) << "also before any layout";
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, PlacesThePictureFourPointsFromItsEdgesAndTheIconInItsMiddle)
{
    ASSERT_EQ(cell->subviews().size(), 2);
    EXPECT_EQ(cell->subviews().first(), cell->imageView()) << "below the icon";
    EXPECT_EQ(cell->imageView()->frame(), QRectF(4, 4, 70, 70));
    EXPECT_EQ(retryIcon().frame().size(), QSizeF(24, 24)) << "the picture's own size";
    EXPECT_EQ(retryIcon().center(), QPointF(39, 39));
    cell->setFrame({0, 0, 105, 99});
    cell->layoutIfNeeded();
    EXPECT_EQ(cell->imageView()->frame(), QRectF(4, 4, 97, 91));
    EXPECT_EQ(retryIcon().center(), QPointF(52.5, 49.5));
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, LoadsAPicture)
{
    cell->setImageURL(pictures.url("/held"));
    pictures.server.waitForHeld(1);
    EXPECT_TRUE(cell->isLoading());
    EXPECT_FALSE(cell->isLoaded());
    EXPECT_TRUE(showsLoadingPicture());
    EXPECT_TRUE(retryIcon().isHidden());
    EXPECT_EQ(cell->imageURL(), pictures.url("/held"));

    pictures.server.release("/held");
    ASSERT_TRUE(waitFor([this] { return cell->isLoaded(); }));
    EXPECT_FALSE(cell->isLoading());
    EXPECT_EQ(shown().pixelColor(0, 0), QColor(Qt::green));
    EXPECT_TRUE(retryIcon().isHidden());
    EXPECT_THAT(delegate->told, ElementsAre("succeeded"));
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, ShowsTheRetryIconAloneAfterAFailure)
{
    load("/fails");
    EXPECT_FALSE(cell->isLoaded());
    EXPECT_TRUE(shown().isNull());
    EXPECT_FALSE(retryIcon().isHidden());
    EXPECT_THAT(delegate->told, ElementsAre("failed"));
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, TellsOfAStoredPictureInALaterTurnToo)
{
    load("/red");
    cell->setImageURL(pictures.url("/blue"));
    ASSERT_TRUE(waitFor([this] { return cell->isLoaded(); }));
    cell->setImageURL(pictures.url("/red"));
    EXPECT_TRUE(cell->isLoading());
    ASSERT_TRUE(waitFor([this] { return cell->isLoaded(); }));
    EXPECT_EQ(delegate->told.size(), 3U);
    EXPECT_EQ(pictures.requestsOf("/red"), 1);
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, KeepsWhatItHasForTheSameAddressInAnyState)
{
    cell->setImageURL(pictures.url("/held"));
    cell->setImageURL(pictures.url("/held"));
    pictures.server.waitForHeld(1);
    pictures.drain();
    EXPECT_EQ(pictures.observer->removed, 0);
    EXPECT_EQ(pictures.observer->added, 0);
    pictures.server.release("/held");
    ASSERT_TRUE(waitFor([this] { return cell->isLoaded(); }));
    cell->setImageURL(pictures.url("/held"));
    EXPECT_TRUE(cell->isLoaded());
    EXPECT_EQ(shown().pixelColor(0, 0), QColor(Qt::green));

    load("/fails");
    cell->setImageURL(pictures.url("/fails"));
    EXPECT_FALSE(cell->isLoading());
    EXPECT_FALSE(retryIcon().isHidden());
    EXPECT_EQ(pictures.requestsOf("/fails"), 1);
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, GivesUpALoadForAnotherAddress)
{
    cell->setImageURL(pictures.url("/held"));
    pictures.server.waitForHeld(1);
    load("/red");
    EXPECT_EQ(pictures.observer->removed, 1);
    EXPECT_EQ(shown().pixelColor(0, 0), QColor(Qt::red));
    pictures.server.release("/held");
    pictures.drain();
    EXPECT_THAT(delegate->told, ElementsAre("succeeded"));
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, LeavesOthersThatWaitForThePictureAlone)
{
    const auto other = newCell();
    cell->setImageURL(pictures.url("/held"));
    other->setImageURL(pictures.url("/held"));
    pictures.server.waitForHeld(1);
    load("/red");
    pictures.server.release("/held");
    ASSERT_TRUE(waitFor([&] { return other->isLoaded(); }));
    EXPECT_EQ(other->imageView()->image().pixelColor(0, 0), QColor(Qt::green));
    EXPECT_EQ(shown().pixelColor(0, 0), QColor(Qt::red));
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, ShowsNothingWithoutAnAddressAndStaysAsItWas)
{
    cell->setImageURL(std::nullopt);
    EXPECT_TRUE(shown().isNull());
    EXPECT_FALSE(cell->isLoading());
    EXPECT_FALSE(cell->isLoaded());

    load("/red");
    cell->setImageURL(std::nullopt);
    EXPECT_TRUE(shown().isNull());
    EXPECT_TRUE(cell->isLoaded());
    EXPECT_EQ(cell->imageURL(), std::nullopt);

    load("/fails");
    cell->setImageURL(std::nullopt);
    EXPECT_TRUE(retryIcon().isHidden());
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, GivesUpALoadWhenItsAddressIsTakenAwayAndStillSaysThatItLoads)
{
    cell->setImageURL(pictures.url("/held"));
    pictures.server.waitForHeld(1);
    cell->setImageURL(std::nullopt);
    EXPECT_TRUE(cell->isLoading());
    EXPECT_TRUE(shown().isNull());
    ASSERT_TRUE(waitFor([this] { return pictures.observer->removed == 1; }));
    load("/red");
    EXPECT_TRUE(cell->isLoaded());
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, ReloadsWhatFailed)
{
    load("/fails");
    pictures.hold("/fails", Qt::yellow);
    cell->reload();
    EXPECT_TRUE(cell->isLoading());
    EXPECT_TRUE(retryIcon().isHidden());
    EXPECT_TRUE(showsLoadingPicture());
    pictures.server.release("/fails");
    ASSERT_TRUE(waitFor([this] { return cell->isLoaded(); }));
    EXPECT_EQ(shown().pixelColor(0, 0), QColor(Qt::yellow));
    EXPECT_THAT(delegate->told, ElementsAre("failed", "succeeded"));
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, ReloadsNothingWithoutAnAddress)
{
    cell->reload();
    EXPECT_FALSE(cell->isLoading());
    EXPECT_TRUE(shown().isNull());
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, DropsAPictureThatCameBeforeItWasGivenUp)
{
    cell->setImageURL(pictures.url("/held"));
    pictures.server.waitForHeld(1);
    const LoopbackPictures::Joined behind(pictures, "/held");
    pictures.server.release("/held");
    behind.wait(); // the picture is on its way to the cell
    pictures.hold("/later", Qt::blue);
    cell->setImageURL(pictures.url("/later"));
    pictures.server.waitForHeld(2);
    drainMainQueue();
    EXPECT_THAT(delegate->told, IsEmpty());
    EXPECT_FALSE(cell->isLoaded());
    EXPECT_TRUE(showsLoadingPicture());

    pictures.server.release("/later");
    ASSERT_TRUE(waitFor([this] { return cell->isLoaded(); }));
    EXPECT_EQ(shown().pixelColor(0, 0), QColor(Qt::blue));
    EXPECT_THAT(delegate->told, ElementsAre("succeeded"));
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, ShowsTheRetryIconForAFailureThatCameBeforeItWasGivenUp)
{
    pictures.server.script("/fails", ScriptedAnswer::held("no picture"));
    cell->setImageURL(pictures.url("/fails"));
    pictures.server.waitForHeld(1);
    const LoopbackPictures::Joined behind(pictures, "/fails");
    pictures.server.release("/fails");
    behind.wait();
    cell->setImageURL(pictures.url("/held"));
    pictures.server.waitForHeld(2);
    drainMainQueue();
    EXPECT_THAT(delegate->told, ElementsAre("failed"));
    EXPECT_FALSE(retryIcon().isHidden());
    EXPECT_TRUE(shown().isNull());
    EXPECT_FALSE(cell->isLoading());

    pictures.server.release("/held");
    ASSERT_TRUE(waitFor([this] { return cell->isLoaded(); }));
    EXPECT_EQ(shown().pixelColor(0, 0), QColor(Qt::green));
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, TellsNobodyWhenItGoesWhileItLoads)
{
    cell->setImageURL(pictures.url("/held"));
    pictures.server.waitForHeld(1);
    const std::weak_ptr<Cell> weak = cell;
    root()->subviews().first()->removeFromSuperview();
    cell.reset();
    EXPECT_TRUE(weak.expired());
    pictures.server.release("/held");
    pictures.drain();
    EXPECT_THAT(delegate->told, IsEmpty());
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, MayGoOnceThePictureIsOnItsWay)
{
    cell->setImageURL(pictures.url("/held"));
    pictures.server.waitForHeld(1);
    const LoopbackPictures::Joined behind(pictures, "/held");
    pictures.server.release("/held");
    behind.wait();
    root()->subviews().first()->removeFromSuperview();
    cell.reset();
    drainMainQueue();
    EXPECT_THAT(delegate->told, IsEmpty());
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, LoadsWithoutADelegate)
{
    delegate.reset();
    load("/red");
    EXPECT_TRUE(cell->isLoaded());
    load("/fails");
    EXPECT_FALSE(retryIcon().isHidden());
}

TEST_F(QXSDKKovalinStickerCollectionViewCellTest, MayBeLetGoByItsDelegate)
{
    class Releasing final : public QXSDKKovalinStickerCollectionViewCellDelegate {
    public:
        explicit Releasing(std::shared_ptr<Cell>& held)
            : cell(held)
        {
        }
        void stickerCollectionViewCellLoadDidSucceed(const std::shared_ptr<Cell>&) override { letGo(); }
        void stickerCollectionViewCellLoadDidFail(const std::shared_ptr<Cell>&) override { letGo(); }
        void letGo()
        {
            cell->removeFromSuperview();
            cell.reset();
        }
        std::shared_ptr<Cell>& cell;
    };
    for (const char* const path : {"/red", "/fails"}) {
        auto single = newCell();
        const auto releasing = std::make_shared<Releasing>(single);
        single->setDelegate(releasing);
        root()->addSubview(single);
        single->setImageURL(pictures.url(path));
        EXPECT_TRUE(waitFor([&] { return !single; }));
        drainMainQueue();
    }
}

} // namespace
