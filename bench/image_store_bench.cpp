// Measures hits, stores and opening of the image store against Qt's own disk cache, and prints the ratios.
//
// image_store_bench [--quick]

#include "Measure.h"
#include "QuickOption.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/store/DecodeImage.h"
#include "platform/store/ImageStore.h"
#include "support/SamplePictures.h"

#include <QtCore/QFile>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUrl>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtNetwork/QNetworkCacheMetaData>
#include <QtNetwork/QNetworkDiskCache>

#include <fmt/format.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <future>
#include <memory>
#include <string_view>
#include <thread>
#include <vector>

namespace kovalin::bench {

namespace {

using platform::EncodedImage;
using platform::ImageStore;
using platform::SerialQueue;

constexpr qint64 kNoLimit = qint64(1) << 40;

struct Options {
    int pictures = 1000;
    int hits = 2000;
    int repetitions = 25;
    std::vector<int> opened = {1'000, 10'000};
};

/// By the wall clock, since most of a hit on disk is done by another thread.
double wallTimeOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

struct Times {
    double median;
    double tail; // 95th percentile
};

/// What is done `between` two of them isn't counted.
Times timesOf(int count, const std::function<void(int)>& work, const std::function<void()>& between = {})
{
    std::vector<double> times;
    for (int i = 0; i < count; ++i) {
        times.push_back(wallTimeOf([&] { work(i); }));
        if (between) {
            between();
        }
    }
    return {quantile(times, 0.5), quantile(times, 0.95)};
}

/// What a sticker's picture is like: shapes with soft edges on a transparent ground, and a little texture, so that its PNG has
/// about 30 KB.
EncodedImage sticker(quint32 seed)
{
    QRandomGenerator random(seed);
    QImage image(256, 256, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        for (int shape = 0; shape < 12; ++shape) {
            QLinearGradient gradient(0, 0, 256, static_cast<double>(random.generate() % 256));
            gradient.setColorAt(0, QColor::fromRgb(random.generate() | 0xFF000000U));
            gradient.setColorAt(1, QColor::fromRgb(random.generate() | 0xFF000000U));
            painter.setBrush(gradient);
            const auto place = [&random] {
                return static_cast<int>(random.generate() % 160) + 20;
            };
            painter.drawEllipse(place(), place(), 70, 60);
        }
        for (int dot = 0; dot < 2000; ++dot) {
            painter.setBrush(QColor::fromRgba(random.generate()));
            painter.drawRect(static_cast<int>(random.generate() % 256), static_cast<int>(random.generate() % 256), 1,
                             1);
        }
    }
    return {image, test::encoded(image)};
}

QString keyOf(int number)
{
    return QStringLiteral("https://pictures.example.com/render/%1/template-%2.png?transparent=1")
        .arg(number * 7919)
        .arg(number);
}

/// Qt's disk cache as a store of pictures.
class NetworkDiskCache final {
public:
    explicit NetworkDiskCache(const QString& folder)
    {
        _cache.setCacheDirectory(folder);
        _cache.setMaximumCacheSize(kNoLimit);
    }

    void store(const EncodedImage& picture, const QString& key)
    {
        QNetworkCacheMetaData head;
        head.setUrl(QUrl(key));
        head.setSaveToDisk(true);
        QIODevice* const device = _cache.prepare(head);
        device->write(picture.bytes);
        _cache.insert(device);
    }

    QImage find(const QString& key)
    {
        const std::unique_ptr<QIODevice> device(_cache.data(QUrl(key)));
        return device ? platform::decodeImage(device->readAll()) : QImage();
    }

private:
    QNetworkDiskCache _cache;
};

/// Ends the program where a picture that was stored isn't found.
void expectFound(const QImage& image)
{
    if (image.isNull()) {
        fmt::print(stderr, "A stored picture wasn't found.\n");
        std::exit(1);
    }
}

/// Returns once everything stored so far is on disk.
void finishStoring(ImageStore& store)
{
    static_cast<void>(store.objectForKey(QStringLiteral("nothing")));
}

void printRow(std::string_view what, const Times& ours, const Times& others)
{
    fmt::print("| {} | {:.3g} µs | {:.3g} µs | {:.3g} µs | {:.3g} µs | {:.3g}× | {:.3g}× |\n", what, ours.median / 1e3,
               ours.tail / 1e3, others.median / 1e3, others.tail / 1e3, others.median / ours.median,
               others.tail / ours.tail);
    std::fflush(stdout);
}

std::unique_ptr<ImageStore> openStore(const QTemporaryDir& folder)
{
    auto store = std::make_unique<ImageStore>(QStringLiteral("pictures"), folder.path());
    store->diskCache().setByteLimit(kNoLimit);
    return store;
}

void measureHits(const Options& options)
{
    const QTemporaryDir ourFolder;
    const QTemporaryDir theirFolder;
    const auto store = openStore(ourFolder);
    NetworkDiskCache cache(theirFolder.path());
    std::vector<EncodedImage> pictures;
    qsizetype bytes = 0;
    for (int i = 0; i < options.pictures; ++i) {
        pictures.push_back(sticker(static_cast<quint32>(i)));
        bytes += pictures.back().bytes.size();
    }
    fmt::print("{} pictures of {:.1f} KB on average\n\n"
               "| what | ours, median | ours, 95 % | QNetworkDiskCache, median | its 95 % | ratio | ratio, 95 % |\n"
               "|---|---:|---:|---:|---:|---:|---:|\n",
               options.pictures, static_cast<double>(bytes) / options.pictures / 1e3);

    const auto at = [&pictures](int number) -> const EncodedImage& {
        return pictures[static_cast<std::size_t>(number)];
    };
    const Times ourStores = timesOf(options.pictures, [&](int i) {
        store->setObject(at(i), keyOf(i), 1);
        finishStoring(*store);
    });
    const Times theirStores = timesOf(options.pictures, [&](int i) { cache.store(at(i), keyOf(i)); });

    QRandomGenerator random(1);
    const auto any = [&] {
        return keyOf(static_cast<int>(random.generate() % static_cast<quint32>(options.pictures)));
    };
    store->memoryCache().setCostLimit(0);
    const Times ourHits = timesOf(options.hits, [&](int) { expectFound(store->objectForKey(any())); });
    const Times theirHits = timesOf(options.hits, [&](int) { expectFound(cache.find(any())); });
    const Times decoding =
        timesOf(options.hits, [&](int i) { expectFound(platform::decodeImage(at(i % options.pictures).bytes)); });
    const Times busyHits = timesOf(options.hits, [&](int i) {
        const int number = i % options.pictures;
        store->setObject(at(number), keyOf(number), 1); // written while the next one is asked for
        expectFound(store->objectForKey(any()));
    });

    store->memoryCache().setCostLimit(50);
    for (int i = 0; i < 50; ++i) {
        store->setObject(at(i % options.pictures), keyOf(i % options.pictures), 1);
    }
    finishStoring(*store);
    const QString key = keyOf(0);
    const Times memoryHits = timesOf(options.hits * 5, [&](int) { expectFound(store->objectForKey(key)); });

    printRow("hit in memory", memoryHits, theirHits);
    printRow("hit on disk, decoded", ourHits, theirHits);
    printRow("of it, decoding", decoding, decoding);
    printRow("hit on disk, decoded, behind a store", busyHits, theirHits);
    printRow("store, written", ourStores, theirStores);
}

/// Hits a second of several threads at once.
void measureThroughput(const Options& options)
{
    const QTemporaryDir folder;
    const auto store = openStore(folder);
    for (int i = 0; i < 100; ++i) {
        store->setObject(sticker(static_cast<quint32>(i)), keyOf(i), 1);
    }
    finishStoring(*store);
    for (const qsizetype limit : {qsizetype(100), qsizetype(0)}) {
        store->memoryCache().setCostLimit(limit);
        const int hits = limit > 0 ? options.hits * 20 : options.hits;
        for (int i = 0; i < 100; ++i) {
            expectFound(store->objectForKey(keyOf(i)));
        }
        fmt::print("\nHits a second {}:", limit > 0 ? "in memory" : "on disk, decoded");
        for (const int threads : {1, 2, 4}) {
            std::vector<std::unique_ptr<SerialQueue>> queues;
            std::vector<std::future<void>> ends;
            const double time = wallTimeOf([&] {
                for (int thread = 0; thread < threads; ++thread) {
                    const auto end = std::make_shared<std::promise<void>>();
                    ends.push_back(end->get_future());
                    queues.push_back(std::make_unique<SerialQueue>(QStringLiteral("reader")));
                    queues.back()->async([&store, end, hits, thread] {
                        for (int i = 0; i < hits; ++i) {
                            expectFound(store->objectForKey(keyOf((i + thread * 17) % 100)));
                        }
                        end->set_value();
                    });
                }
                for (std::future<void>& end : ends) {
                    end.wait();
                }
            });
            fmt::print(" {:.0f} by {} thread{}{}", threads * hits / (time / 1e9), threads, threads > 1 ? "s" : "",
                       threads < 4 ? "," : "");
        }
    }
    fmt::print("\n");
}

/// A store that has gone writes its log into its file, in the background, and removes it.
void waitUntilClosed(const QTemporaryDir& folder)
{
    while (QFile::exists(folder.filePath(QStringLiteral("pictures.sqlite-wal")))) {
        std::this_thread::yield();
    }
}

void measureOpening(const Options& options)
{
    const QImage image = test::noise(1, QSize(40, 40));
    const EncodedImage picture{image, test::encoded(image)}; // some 5 KB: 10 000 are what 50 MiB hold
    for (const int count : options.opened) {
        const QTemporaryDir ourFolder;
        const QTemporaryDir theirFolder;
        {
            const auto store = openStore(ourFolder);
            NetworkDiskCache cache(theirFolder.path());
            for (int i = 0; i < count; ++i) {
                store->setObject(picture, keyOf(i), 1);
                cache.store(picture, keyOf(i));
            }
            finishStoring(*store);
        }
        waitUntilClosed(ourFolder);
        const auto name = [count](const char* what) {
            return fmt::format("opening with {} entries and {}", count, what);
        };
        std::unique_ptr<ImageStore> store;
        const auto close = [&] {
            store.reset();
            waitUntilClosed(ourFolder);
        };
        const auto openAndFind = [&](int i) {
            store = openStore(ourFolder);
            expectFound(store->objectForKey(keyOf(i)));
        };
        const auto openAndStore = [&](int i) {
            store = openStore(ourFolder);
            store->setObject(picture, keyOf(i), 1);
            finishStoring(*store);
        };
        const auto theyFind = [&](int i) {
            expectFound(NetworkDiskCache(theirFolder.path()).find(keyOf(i)));
        };
        const auto theyStore = [&](int i) {
            NetworkDiskCache(theirFolder.path()).store(picture, keyOf(i));
        };
        printRow(name("a hit"), timesOf(options.repetitions, openAndFind, close),
                 timesOf(options.repetitions, theyFind));
        printRow(name("a store"), timesOf(options.repetitions, openAndStore, close),
                 timesOf(options.repetitions, theyStore));
    }
}

} // namespace

} // namespace kovalin::bench

int main(int argc, char** argv)
{
    using namespace kovalin;

    bench::Options options;
    if (bench::isQuick(argc, argv)) {
        options = {20, 50, 2, {50}};
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    // Not on the main thread, which never waits for a disk.
    platform::SerialQueue queue(QStringLiteral("bench"));
    std::promise<void> end;
    queue.async([&] {
        bench::measureHits(options);
        bench::measureOpening(options);
        bench::measureThroughput(options);
        end.set_value();
    });
    end.get_future().wait();
    return 0;
}
