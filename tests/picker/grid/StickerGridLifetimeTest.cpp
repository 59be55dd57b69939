#include "picker/grid/GridTest.h"
#include "support/ManualAnimationDriver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

// What a host does to grids over a day: they come, are flung and searched, and go at any moment.

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;

namespace {

constexpr int grids = 1000;

class StickerGridLifetimeTest : public GridTest {
protected:
    /// Of pictures that come, stay away, fail and are never answered.
    [[nodiscard]] Grid::List mixed(int seed) const
    {
        static constexpr std::array<const char*, 5> paths = {"/red", "/held", "/fails", "/blue", "/fails-too"};
        KovalinStickerList stickers;
        for (int i = 0; i < 120; ++i) {
            const auto made = sticker(paths.at(static_cast<size_t>(i * 7 + seed) % paths.size()))->copy();
            made->setComicId(QString::number(i + seed));
            stickers.append(made);
        }
        return list(stickers);
    }

    /// A finger that moves up quickly, and lets go on its way.
    void fling()
    {
        press({100, 200});
        for (int y = 190; y > 40; y -= 30) {
            move({100, double(y)});
            driver.step(8ms);
        }
        release({100, 40});
        driver.step(16ms);
    }

    ManualAnimationDriver driver;
};

TEST_F(StickerGridLifetimeTest, ThousandGridsComeAreFlungAndGoWithDownloadsUnderWay)
{
    std::vector<std::weak_ptr<Cell>> cells;
    for (int round = 0; round < grids; ++round) {
        grid = Grid::create(mixed(round), std::make_shared<QXSDKKovalinStickerPickerConfig>(), pictures.cache);
        grid->setDelegate(delegate);
        grid->view()->setFrame(root()->bounds());
        root()->addSubview(grid->view());
        grid->view()->layoutIfNeeded();
        ASSERT_TRUE(cell(0));
        cells.push_back(cell(0));
        const int stage = round % 5;
        if (stage > 0) {
            fling();
            EXPECT_GT(grid->view()->contentOffset().y(), 0);
        }
        if (stage > 1) {
            grid->setKovalins(mixed(round + 3));
            driver.step(50ms);
        }
        if (stage > 2) {
            driver.step(1s);
            grab();
        }
        if (stage > 3) {
            grid->view()->removeFromSuperview();
        }
        const std::weak_ptr<Grid> gone = grid;
        grid->view()->removeFromSuperview();
        grid.reset();
        EXPECT_TRUE(gone.expired());
    }
    pictures.server.release("/held");
    EXPECT_TRUE(waitFor([&] { return std::ranges::all_of(cells, [](const auto& each) { return each.expired(); }); }));
    EXPECT_TRUE(root()->subviews().isEmpty());
}

} // namespace
