// Measures the road from a key stroke to the first frame that shows what is found by it, and prints it beside the
// engines' own answer.
//
// content_view_bench [--quick]

#include "FullPictureStore.h"
#include "FusionWorkload.h"
#include "Measure.h"
#include "MeasuredEngines.h"
#include "MeasuredWindow.h"
#include "QuickOption.h"
#include "content/QXSDKKovalinFriendState.h"
#include "content/QXSDKKovalinPacksArchive.h"
#include "picker/content/QXSDKKovalinStickerPickerContentView.h"
#include "platform/foundation/CachesDirectory.h"
#include "platform/ui/ImageView.h"
#include "support/WaitFor.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <QtCore/QLoggingCategory>
#include <QtCore/QTemporaryDir>
#include <QtGui/QGuiApplication>
#include <QtTest/QTest>

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

namespace kovalin::bench {

namespace {

using namespace std::chrono_literals;
using Cell = QXSDKKovalinStickerCollectionViewCell;
using ContentView = QXSDKKovalinStickerPickerContentView;

constexpr QSize kWindow(412, 700); // points, of a phone
constexpr int kBars = 80;
constexpr int kTilesInView = 24; // of a seventh row only the edge
constexpr QPoint kInField(200, 20);
/// What passes between two frames for what moves, whether or not that is waited for.
constexpr auto kFrame = 16ms;

struct Options {
    /// 2 000 stickers.
    FusionWorkload::Size size{800, 100'000, 2'000, 1'500'000, 48};
    int rounds = 5;
};

/// Ends the program where what is measured isn't what it is meant to be.
void require(bool holds, std::string_view what)
{
    if (!holds) {
        fmt::print(stderr, "The measurement is void: {}.\n", what);
        std::exit(1);
    }
}

/// All stickers are popular ones too, with an address that has a picture.
FusionWorkload workloadOf(const FusionWorkload::Size& size)
{
    FusionWorkload workload(size);
    auto popular = std::make_shared<KovalinPack>();
    popular->setPackId(QStringLiteral("popular"));
    popular->setName(QStringLiteral("Popular"));
    KovalinStickerList all;
    KovalinPackList packs;
    for (const auto& pack : workload.packs) {
        KovalinStickerList stickers;
        for (const auto& sticker : pack->stickers()) {
            const auto copy = sticker->copy();
            copy->setFriendvalin(false);
            copy->setUrl(QStringLiteral("http://127.0.0.1/") + copy->comicId().value_or(QString()));
            stickers.append(copy);
        }
        const auto changed = std::make_shared<KovalinPack>();
        changed->setPackId(pack->packId());
        changed->setName(pack->name());
        changed->setVisible(pack->visible());
        changed->setStickers(stickers);
        packs.append(changed);
        all += stickers;
    }
    popular->setStickers(all);
    packs.prepend(popular);
    workload.packs = packs;
    return workload;
}

/// What a key stroke led to, by the clock.
struct Stroke {
    Nanoseconds answer = 0; ///< To the answer's being set.
    Nanoseconds shown = 0;  ///< To the end of the first frame that shows it.
    bool isVisible = false; ///< Whether it changes anything in view.
};

/// A content view in a window that draws when it is told, and somebody who types into it.
class TypedView final {
public:
    explicit TypedView(const FusionWorkload& workload)
        : _engines(workload)
    {
        _provider->setPacks(workload.packs);
        _view = ContentView::create(QRectF(QPointF(), kWindow), _friends,
                                    std::make_shared<QXSDKKovalinStickerPickerConfig>(),
                                    {_engines.fusion(), _engines.fusion(), _provider, newFullCache(_logger)});
        _view->setParentItem(&_window.contentItem());
        _view->showPopularKovalinsAndDefaultTagTiles();
        _window.contentItem().window()->requestActivate();
        settle();
        QTest::mouseClick(_window.contentItem().window(), Qt::LeftButton, {}, kInField);
        settle();
    }
    ~TypedView()
    {
        _view->setNavbarOffset(0);
        _view->setParentItem(nullptr);
        _view.reset();
        test::drainMainQueue();
    }
    Q_DISABLE_COPY_MOVE(TypedView)

    [[nodiscard]] qsizetype shownStickers() const { return _view->kovalins()->size(); }

    /// Until nothing moves any more.
    void settle()
    {
        do {
            _window.pacedFrame();
        } while (!isReady());
        _window.frame(1s);
        _window.frame(1s);
    }

    /// One that changes what is found.
    Stroke strike(Qt::Key key, char letter)
    {
        const KovalinStickerListPtr before = _view->kovalins();
        const QImage pictureBefore = stickersPicture();
        const Nanoseconds start = clockNow();
        if (key == Qt::Key_unknown) {
            QTest::keyClick(_window.contentItem().window(), letter);
        } else {
            QTest::keyClick(_window.contentItem().window(), key);
        }
        _window.frame(kFrame); // the letter itself
        while (_view->kovalins() == before) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        Stroke stroke;
        stroke.answer = clockNow() - start;
        _window.frame(kFrame); // lays out, and so asks for pictures
        while (!isReady()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            _window.frame(kFrame);
        }
        _window.frame(kFrame); // with what the last one may have asked for, and all of it on its way in
        stroke.shown = clockNow() - start;
        stroke.isVisible = firstOf(*before) != firstOf(*_view->kovalins());
        require(stroke.isVisible == (stickersPicture() != pictureBefore), "a frame doesn't show what has changed");
        return stroke;
    }

private:
    /// Whether a frame would show all that has place in view, with its pictures.
    [[nodiscard]] bool isReady() const
    {
        const auto& grid = static_cast<const platform::CollectionView&>(*_view->scrollView());
        const auto items = grid.indexPathsForVisibleItems();
        return items.isEmpty() == _view->kovalins()->isEmpty() && std::ranges::all_of(items, [&](qsizetype item) {
                   const auto cell = std::static_pointer_cast<Cell>(grid.cellForItemAtIndexPath(item));
                   return cell && cell->isLoaded() && cell->imageView()->isImageReady();
               });
    }
    /// Those that have place in view.
    [[nodiscard]] static QStringList firstOf(const KovalinStickerList& stickers)
    {
        QStringList ids;
        for (const auto& sticker : stickers.first(std::min<qsizetype>(stickers.size(), kTilesInView))) {
            ids.append(sticker->comicId().value_or(QString()));
        }
        return ids;
    }
    /// What is drawn below the bars.
    [[nodiscard]] QImage stickersPicture() const
    {
        return _window.picture().copy(0, kBars, kWindow.width(), kWindow.height() - kBars);
    }

    QXSDKKovalinOperationalMetricsLogger _logger{QStringLiteral("1")};
    QXSDKKovalinStickerPickerSessionManager _sessions;
    MeasuredEngines _engines;
    std::shared_ptr<QXSDKKovalinFriendState> _friends = QXSDKKovalinFriendState::create(_sessions);
    std::shared_ptr<QXSDKKovalinStickerDataProvider> _provider =
        QXSDKKovalinStickerDataProvider::create(QXSDKKovalinPacksArchive::create());
    MeasuredWindow _window{kWindow};
    std::shared_ptr<ContentView> _view;
};

struct Typing {
    std::vector<double> answers;
    std::vector<double> results; // to the frame that shows what was found
    std::vector<double> popular; // to the frame that shows the popular list again
    std::vector<double> found;   // stickers
};

Typing measure(TypedView& view, const QList<QStringList>& texts, int rounds)
{
    Typing typing;
    const qsizetype all = view.shownStickers();
    for (int round = 0; round < rounds; ++round) {
        for (const QStringList& beginnings : texts) {
            const QString& text = beginnings.last();
            QTest::keyClick(QGuiApplication::focusWindow(), text.at(0).toLatin1());
            view.settle();
            for (qsizetype length = 2; length <= text.size(); ++length) {
                const Stroke stroke = view.strike(Qt::Key_unknown, text.at(length - 1).toLatin1());
                if (stroke.isVisible) {
                    typing.answers.push_back(stroke.answer);
                    typing.results.push_back(stroke.shown);
                    typing.found.push_back(static_cast<double>(view.shownStickers()));
                }
                view.settle();
            }
            for (qsizetype length = text.size(); length > 2; --length) {
                static_cast<void>(view.strike(Qt::Key_Backspace, 0));
                view.settle();
            }
            typing.popular.push_back(view.strike(Qt::Key_Backspace, 0).shown);
            require(view.shownStickers() == all, "the popular list doesn't come back");
            view.settle();
            QTest::keyClick(QGuiApplication::focusWindow(), Qt::Key_Backspace);
            view.settle();
        }
    }
    return typing;
}

void printRow(std::string_view what, const std::vector<double>& times, double than)
{
    fmt::print("| {} | {:.3g} ms | {:.3g} ms | {:.3g}× |\n", what, quantile(times, 0.5) / 1e6,
               quantile(times, 0.99) / 1e6, quantile(times, 0.5) / than);
}

} // namespace

} // namespace kovalin::bench

int main(int argc, char** argv)
{
    using namespace kovalin;

    bench::Options options;
    if (bench::isQuick(argc, argv)) {
        options = {{800, 5'000, 500, 20'000, 6}, 1};
    }
    QLoggingCategory::setFilterRules(QStringLiteral("kovalin.*=false"));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    const QTemporaryDir caches;
    platform::setCachesDirectory(caches.path());

    const bench::FusionWorkload workload = bench::workloadOf(options.size);
    bench::TypedView view(workload);
    const qsizetype stickers = view.shownStickers();
    const bench::Typing typing = bench::measure(view, workload.typedTexts, options.rounds);
    const double answer = bench::quantile(typing.answers, 0.5);
    fmt::print("{} × {} points; {} stickers, {} key strokes that find {} at the median\n\n"
               "| from a key stroke | median | 99 % | than the answer |\n|---|---:|---:|---:|\n",
               bench::kWindow.width(), bench::kWindow.height(), stickers, typing.results.size(),
               bench::quantile(typing.found, 0.5));
    bench::printRow("to the engines' answer, the letter being drawn meanwhile", typing.answers, answer);
    bench::printRow("to the first frame that shows what was found", typing.results, answer);
    bench::printRow("from a deleted letter to the popular list", typing.popular, answer);
    return 0;
}
