// Measures scrolling and filling of the sticker grid against Qt Quick's own GridView, and prints the ratios.
//
// sticker_grid_bench [--quick]

#include "GridViewBaseline.h"
#include "Measure.h"
#include "MeasuredWindow.h"
#include "QuickOption.h"
#include "StickerGrid.h"

#include <QtCore/QMetaMethod>
#include <QtGui/QGuiApplication>
#include <QtQuick/QQuickWindow>

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace kovalin::bench {

namespace {

using namespace std::chrono_literals;

constexpr QSize kWindow(412, 700); // points, of a phone

struct Options {
    int stickers = 10'000;
    int frames = 1'500;
    int fills = 40;
    int filled = 1'000;
    int reloads = 100;
};

using NewGrid = std::function<std::unique_ptr<MeasuredGrid>(QQuickItem& parent)>;

struct Spread {
    Nanoseconds median = 0;
    Nanoseconds tail = 0; // 95th percentile

    [[nodiscard]] static Spread of(const std::vector<Nanoseconds>& times)
    {
        return {quantile(times, 0.5), quantile(times, 0.95)};
    }
};

/// Ends the program where what is measured isn't what it is meant to be.
void require(bool holds, std::string_view what)
{
    if (!holds) {
        fmt::print(stderr, "The measurement is void: {}.\n", what);
        std::exit(1);
    }
}

/// Draws until all pictures in view are there and nothing moves.
void settle(MeasuredWindow& window, const MeasuredGrid& grid)
{
    constexpr int maxFrames = 2'000;
    for (int frame = 0; frame < maxFrames; ++frame) {
        window.pacedFrame();
        if (grid.tilesInUse() > 0 && grid.tilesWithPicture() == grid.tilesInUse()) {
            window.frame(1s);
            return;
        }
    }
    require(false, "pictures don't come");
}

void flick(QQuickItem& flickable)
{
    constexpr double velocity = -2'500; // points a second, the most that a Flickable takes
    const QMetaObject& type = *flickable.metaObject();
    const int method = type.indexOfMethod("flick(double,double)");
    require(method >= 0 && type.method(method).invoke(&flickable, Q_ARG(double, 0.0), Q_ARG(double, velocity)),
            "what should scroll can't be flicked");
}

double shareDrawn(const QImage& picture)
{
    qsizetype drawn = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            drawn += picture.pixel(x, y) != qRgb(255, 255, 255) ? 1 : 0;
        }
    }
    return static_cast<double>(drawn) / static_cast<double>(picture.width() * picture.height());
}

struct Fling {
    Spread frame;
    Spread step;
    Spread polish;
    Spread sync;
    Spread render;
    double rowsPerFrame = 0;
    int mostTilesInUse = 0;
    int mostTiles = 0;
};

Fling measureFling(const NewGrid& newGrid, const Options& options)
{
    MeasuredWindow window(kWindow);
    const auto grid = newGrid(window.contentItem());
    grid->prepareStickers(0, options.stickers);
    grid->showStickers();
    settle(window, *grid);
    QQuickItem& flickable = grid->flickable();
    const double from = flickable.property("contentY").toDouble();

    std::vector<Nanoseconds> frames;
    std::vector<Nanoseconds> steps;
    std::vector<Nanoseconds> polishes;
    std::vector<Nanoseconds> syncs;
    std::vector<Nanoseconds> renders;
    Fling fling;
    while (static_cast<int>(frames.size()) < options.frames) {
        if (!flickable.property("flicking").toBool() || flickable.property("verticalVelocity").toDouble() < 1'500) {
            flick(flickable); // a finger that keeps pushing
        }
        const FrameCost cost = window.pacedFrame();
        frames.push_back(cost.total());
        steps.push_back(cost.step);
        polishes.push_back(cost.polish);
        syncs.push_back(cost.sync);
        renders.push_back(cost.render);
        fling.mostTilesInUse = std::max(fling.mostTilesInUse, grid->tilesInUse());
        fling.mostTiles = std::max(fling.mostTiles, grid->tiles());
    }
    const double way = flickable.property("contentY").toDouble() - from;
    fling.rowsPerFrame = way / tileSide(kWindow.width()) / options.frames;
    require(fling.rowsPerFrame > 0.1, "the grid hasn't scrolled");
    require(shareDrawn(window.picture()) > 0.2, "nothing is drawn");
    fling.frame = Spread::of(frames);
    fling.step = Spread::of(steps);
    fling.polish = Spread::of(polishes);
    fling.sync = Spread::of(syncs);
    fling.render = Spread::of(renders);
    return fling;
}

struct Filling {
    Spread firstFrame;  ///< From the call to the first frame.
    Spread allPictures; ///< To the frame in which all tiles have their pictures, waiting not counted.
};

Filling measureFilling(const NewGrid& newGrid, const Options& options)
{
    constexpr int maxFrames = 100;
    MeasuredWindow window(kWindow);
    const auto grid = newGrid(window.contentItem());
    grid->prepareStickers(0, 1);
    grid->showStickers();
    settle(window, *grid);
    std::vector<Nanoseconds> first;
    std::vector<Nanoseconds> all;
    for (int fill = 0; fill < options.fills; ++fill) {
        grid->prepareStickers((fill + 1) * options.filled, options.filled);
        Nanoseconds time = timeOf([&] { grid->showStickers(); });
        time += window.frame(0ms).total();
        first.push_back(time);
        int frames = 0;
        while (grid->tilesWithPicture() < grid->tilesInUse() && ++frames < maxFrames) {
            time += window.pacedFrame().total();
        }
        require(frames < maxFrames, "pictures don't come");
        all.push_back(time);
        settle(window, *grid);
    }
    return {Spread::of(first), Spread::of(all)};
}

/// Bytes on the heap that each reload leaves.
double measureGrowth(const NewGrid& newGrid, const Options& options)
{
    MeasuredWindow window(kWindow);
    const auto grid = newGrid(window.contentItem());
    const auto reload = [&](int round) {
        grid->prepareStickers(round % 2 * options.filled, options.filled);
        grid->showStickers();
        settle(window, *grid);
    };
    // Until what is kept for later use has its size.
    for (int round = 0; round < options.reloads; ++round) {
        reload(round);
    }
    const auto before = heapInUse();
    for (int round = 0; round < options.reloads; ++round) {
        reload(round);
    }
    const auto after = heapInUse();
    return before && after ? (static_cast<double>(*after) - static_cast<double>(*before)) / options.reloads : 0;
}

struct Results {
    Fling fling;
    Filling filling;
    double growth = 0;
};

Results measure(const NewGrid& newGrid, const Options& options)
{
    return {measureFling(newGrid, options), measureFilling(newGrid, options), measureGrowth(newGrid, options)};
}

void printTime(std::string_view what, Nanoseconds ours, Nanoseconds theirs)
{
    fmt::print("| {} | {:.3g} ms | {:.3g} ms | {:.3g}× |\n", what, ours / 1e6, theirs / 1e6, theirs / ours);
}

void printTimes(const std::string& what, const Spread& ours, const Spread& theirs)
{
    printTime(what + ", median", ours.median, theirs.median);
    printTime(what + ", 95 %", ours.tail, theirs.tail);
}

void print(const Results& ours, const Results& theirs, const Options& options)
{
    fmt::print("{} × {} points; the fling passes {:.2f} rows a frame with ours, {:.2f} with GridView\n\n"
               "| what | ours | GridView | ratio |\n|---|---:|---:|---:|\n",
               kWindow.width(), kWindow.height(), ours.fling.rowsPerFrame, theirs.fling.rowsPerFrame);
    printTimes(fmt::format("a frame of the fling through {} stickers", options.stickers), ours.fling.frame,
               theirs.fling.frame);
    printTimes("of it, events and motion", ours.fling.step, theirs.fling.step);
    printTimes("of it, polish", ours.fling.polish, theirs.fling.polish);
    printTimes("of it, sync", ours.fling.sync, theirs.fling.sync);
    printTimes("of it, render", ours.fling.render, theirs.fling.render);
    printTimes(fmt::format("{} other stickers, to the first frame", options.filled), ours.filling.firstFrame,
               theirs.filling.firstFrame);
    printTimes(fmt::format("{} other stickers, to all pictures in view", options.filled), ours.filling.allPictures,
               theirs.filling.allPictures);
    fmt::print("\n| what | ours | GridView |\n|---|---:|---:|\n"
               "| tiles in use, at most | {} | {} |\n| tiles, at most | {} | {} |\n"
               "| bytes on the heap that each of {} reloads leaves | {:.0f} | {:.0f} |\n",
               ours.fling.mostTilesInUse, theirs.fling.mostTilesInUse, ours.fling.mostTiles, theirs.fling.mostTiles,
               options.reloads, ours.growth, theirs.growth);
}

} // namespace

} // namespace kovalin::bench

int main(int argc, char** argv)
{
    using namespace kovalin;

    bench::Options options;
    if (bench::isQuick(argc, argv)) {
        options = {2'000, 200, 3, 200, 10};
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    const bench::NewGrid newGridView = [](QQuickItem& parent) {
        return std::make_unique<bench::GridViewBaseline>(parent, bench::kWindow);
    };
    const bench::NewGrid newStickerGrid = [](QQuickItem& parent) {
        return std::make_unique<bench::StickerGrid>(parent, bench::kWindow);
    };
    const bench::Results theirs = bench::measure(newGridView, options);
    const bench::Results ours = bench::measure(newStickerGrid, options);
    bench::print(ours, theirs, options);
    return 0;
}
