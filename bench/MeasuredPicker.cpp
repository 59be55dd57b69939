#include "MeasuredPicker.h"

#include "MeasuredGrid.h"
#include "content/QXSDKKovalinPacksArchive.h"
#include "kits/core/QXSDKOperationalMetricsQueue.h"
#include "kits/login/QXSDKLoginClient.h"
#include "picker/controller/QXSDKKovalinStickerPickerViewController.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/foundation/Application.h"
#include "platform/foundation/CachesDirectory.h"
#include "platform/foundation/Clock.h"
#include "platform/store/ImageStore.h"
#include "support/WaitFor.h"

#include <QtCore/QBuffer>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtQuick/QQuickWindow>

#include <fmt/format.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kovalin::bench {

namespace {

using namespace platform;
using namespace std::chrono_literals;

constexpr QSize kWindow(412, 700); // points, of a phone
constexpr int kPictures = 300;

void require(bool holds, const char* what)
{
    if (!holds) {
        fmt::print(stderr, "The measurement is void: {}.\n", what);
        std::exit(1);
    }
}

// The content

QString addressOf(int sticker)
{
    return QStringLiteral("https://stickers.example/%1.png").arg(sticker);
}

QJsonArray packsOf(int stickers)
{
    QJsonArray list;
    for (int number = 0; number < stickers; ++number) {
        list.append(QJsonObject{{QStringLiteral("comic_id"), QString::number(number + 1)},
                                {QStringLiteral("url"), addressOf(number)},
                                {QStringLiteral("tags"), QJsonArray{QStringLiteral("tag %1*").arg(number % 400),
                                                                    QStringLiteral("word%1").arg(number % 97)}}});
    }
    return {QJsonObject{{QStringLiteral("id"), QStringLiteral("popular")},
                        {QStringLiteral("title"), QStringLiteral("Popular")},
                        {QStringLiteral("visible"), true},
                        {QStringLiteral("stickers"), list}}};
}

QByteArray encoded(const QImage& picture)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return bytes;
}

/// An account whose packs come when that is said.
class MeasuredAccount final : public QXSDKLoginClient {
public:
    [[nodiscard]] bool isUserLoggedIn() const override { return true; }
    [[nodiscard]] bool hasAccessToScope(const QString& /*scope*/) const override { return true; }
    void loginFromViewController(QObject* /*presenter*/, LoginCompletion /*completion*/) override {}
    void unlink() override {}
    void fetchUserDataWithQuery(const QString& query, const std::optional<QJsonObject>& /*variables*/, Success success,
                                Failure /*failure*/) override
    {
        if (query.contains(QStringLiteral("packs("))) {
            dispatchMain([this, success = std::move(success)] { _waiting.push_back(success); });
        }
    }

    /// Main thread.
    void answer(int stickers)
    {
        require(test::waitFor([this] { return !_waiting.empty(); }), "no packs are asked for");
        const QJsonDocument packs(QJsonObject{{QStringLiteral("packs"), packsOf(stickers)}});
        const QJsonObject kovalin{{QStringLiteral("packs"), QString::fromUtf8(packs.toJson())}};
        const QJsonObject me{{QStringLiteral("kovalin"), kovalin}};
        for (const Success& success : std::exchange(_waiting, {})) {
            success({{QStringLiteral("data"), QJsonObject{{QStringLiteral("me"), me}}}});
        }
    }

private:
    std::vector<Success> _waiting; // main thread only
};

// What is measured

/// Keeps the time to the first sticker.
class FirstRenders final : public QXSDKOperationalMetricsQueue {
public:
    void addCount(qint64 /*count*/, const QString& /*name*/) override {}
    void addLatencyFromTime(double startTime, const QString& name) override
    {
        if (name.endsWith(QStringLiteral("perceived:first_render"))) {
            constexpr double nanosPerSecond = 1e9;
            const Nanoseconds time = (currentTimeSeconds() - startTime) * nanosPerSecond;
            dispatchMain([this, time] { _time = time; });
        }
    }

    /// Of the picker that was made last. Main thread.
    [[nodiscard]] Nanoseconds next()
    {
        require(test::waitFor([this] { return _time.has_value(); }), "no sticker is drawn");
        return *std::exchange(_time, std::nullopt);
    }

private:
    std::optional<Nanoseconds> _time; // main thread only
};

/// How often threads of this process have given the processor up of themselves, so far.
double waits()
{
    static const QRegularExpression line(QStringLiteral("^voluntary_ctxt_switches:\\s*(\\d+)"),
                                         QRegularExpression::MultilineOption);
    double sum = 0;
    QDirIterator threads(QStringLiteral("/proc/self/task"), QDir::Dirs | QDir::NoDotAndDotDot);
    while (threads.hasNext()) {
        QFile status(threads.next() + QStringLiteral("/status"));
        if (status.open(QIODevice::ReadOnly)) {
            sum += line.match(QString::fromLatin1(status.readAll())).captured(1).toDouble();
        }
    }
    return sum;
}

/// The process's memory without what it shares, in bytes.
double ownPages()
{
    constexpr double pageSize = 4'096;
    QFile file(QStringLiteral("/proc/self/statm"));
    const QList<QByteArray> fields = file.open(QIODevice::ReadOnly) ? file.readAll().split(' ') : QList<QByteArray>();
    return fields.size() > 2 ? (fields.at(1).toDouble() - fields.at(2).toDouble()) * pageSize : 0;
}

double heap()
{
    return static_cast<double>(heapInUse().value_or(0));
}

void letPass(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

QQuickItem* flickableIn(QQuickItem& item)
{
    if (item.inherits("QQuickFlickable") && item.isVisible() && item.height() > item.width()) {
        return &item; // the grid, which isn't the row of tags
    }
    for (QQuickItem* const child : item.childItems()) {
        if (QQuickItem* const found = flickableIn(*child)) {
            return found;
        }
    }
    return nullptr;
}

/// A picker in a host's window, for as long as it lives.
class OpenPicker final {
public:
    explicit OpenPicker(QQuickWindow& window)
        : _window(window)
    {
        creation = timeOf([this] {
            _controller = QXSDKKovalinStickerPickerViewController::create();
            _view = _controller->view();
        });
        _view->setSize(window.size());
        _view->setParentItem(window.contentItem());
        _controller->viewWillAppear();
    }
    ~OpenPicker()
    {
        _controller->viewWillDisappear();
        _controller.reset();
        test::drainMainQueue();
    }
    Q_DISABLE_COPY_MOVE(OpenPicker)

    void showScreens(int count)
    {
        QQuickItem* const grid = flickableIn(*_view);
        require(grid, "the picker has nothing that scrolls");
        for (int screen = 0; screen < count; ++screen) {
            const double end = grid->property("contentHeight").toDouble() - grid->height();
            const double next = grid->property("contentY").toDouble() + kWindow.height();
            grid->setProperty("contentY", next > end ? 0 : next);
            drawFrame();
            letPass(30ms); // in which its pictures come
        }
    }
    void hide() { _controller->viewWillDisappear(); }

    Nanoseconds creation = 0;

private:
    void drawFrame()
    {
        bool isDrawn = false;
        const auto drawn =
            QObject::connect(&_window, &QQuickWindow::frameSwapped, &_window, [&isDrawn] { isDrawn = true; });
        _window.update();
        require(test::waitFor([&isDrawn] { return isDrawn; }), "nothing is drawn");
        QObject::disconnect(drawn);
    }

    QQuickWindow& _window;
    std::shared_ptr<QXSDKKovalinStickerPickerViewController> _controller;
    QQuickItem* _view = nullptr;
};

/// While it is hidden, in a second.
double wakeUps(bool isQuick)
{
    letPass(isQuick ? 200ms : 5'000ms); // what its end brings with it
    const std::chrono::seconds time(isQuick ? 1 : 10);
    const double before = waits();
    letPass(time);
    constexpr double own = 1; // the wait for the measurement's end
    return (waits() - before - own) / static_cast<double>(time.count());
}

} // namespace

void leaveCaches(const QString& folder, int stickers)
{
    setCachesDirectory(folder);
    QXSDKLoginClient::setShared(std::make_shared<MeasuredAccount>());
    const auto archive = QXSDKKovalinPacksArchive::shared();
    archive->archivePacks(KovalinPack::packsFromJson(packsOf(stickers)));
    Application::setState(ApplicationState::Background);
    require(test::waitFor([&] { return archive->hasPacksToUnarchiveOnDisk(); }), "no archive is written");

    ImageStore store(QStringLiteral("QXSDKKovalinKit"));
    std::vector<EncodedImage> pictures;
    for (int number = 0; number < kPictures; ++number) {
        pictures.push_back({stickerPicture(number), encoded(stickerPicture(number))});
    }
    for (int number = 0; number < stickers; ++number) {
        store.setObject(pictures.at(static_cast<std::size_t>(number % kPictures)), addressOf(number));
    }
    // One that isn't in memory any more is read behind all that is still to be written, and not on the main thread.
    auto first = std::async(std::launch::async, [&store] { return store.objectForKey(addressOf(0)); });
    require(!first.get().isNull(), "no pictures are written");
}

PickerFigures measurePicker(const QString& folder, int stickers, bool isQuick)
{
    const int screens = isQuick ? 20 : 1'000;
    setCachesDirectory(folder);
    const auto renders = std::make_shared<FirstRenders>();
    QXSDKOperationalMetricsQueue::setSharedInstance(renders);
    const auto account = std::make_shared<MeasuredAccount>();
    QXSDKLoginClient::setShared(account);
    QQuickWindow window;
    window.resize(kWindow);
    window.show();
    letPass(200ms);

    PickerFigures figures;
    const double heapBefore = heap();
    const double pagesBefore = ownPages();
    {
        OpenPicker picker(window);
        figures.creation = picker.creation;
        figures.coldStart = renders->next();
        account->answer(stickers);
        letPass(1'000ms);
        figures.openHeap = heap() - heapBefore;
        figures.openPages = ownPages() - pagesBefore;
        picker.showScreens(screens / 4); // until what is kept has its size
        letPass(500ms);
        const double early = heap();
        picker.showScreens(screens);
        letPass(500ms);
        figures.grownHeap = heap() - early;
        picker.hide();
        window.hide();
        figures.wakeUps = wakeUps(isQuick);
        window.show();
    }
    std::vector<double> warmStarts;
    for (int round = 0; round < (isQuick ? 3 : 20); ++round) {
        const OpenPicker picker(window);
        warmStarts.push_back(renders->next());
        letPass(50ms);
    }
    figures.warmStart = quantile(std::move(warmStarts), 0.5);
    return figures;
}

} // namespace kovalin::bench
