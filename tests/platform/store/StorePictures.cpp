// Stores pictures without an end, telling of every few that are on disk, until it is killed.
//
// store_pictures FOLDER SEED

#include "platform/dispatch/SerialQueue.h"
#include "platform/store/ImageStore.h"
#include "support/SamplePictures.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QRandomGenerator>

#include <cstdio>

using namespace kovalin;

namespace {

/// The numbers of pictures; a picture is the same in all processes.
constexpr quint32 kPictures = 200;
constexpr qint64 kByteLimit = 200'000;

[[noreturn]] void storeForever(platform::PINCache& cache, quint32 seed)
{
    QRandomGenerator random(seed);
    cache.diskCache().setByteLimit(kByteLimit);
    cache.memoryCache().setCostLimit(5);
    for (int round = 0;; ++round) {
        const quint32 number = random.generate() % kPictures;
        const QImage image = test::noise(number);
        cache.setObject({image, test::encoded(image)}, QString::number(number), 1);
        static_cast<void>(cache.objectForKey(QString::number(random.generate() % kPictures)));
        if (round % 61 == 60) {
            cache.removeAllObjects();
        }
        if (round % 10 == 9) {
            std::puts("stored");
            std::fflush(stdout);
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        return 2;
    }
    platform::ImageStore store(QStringLiteral("pictures"), arguments[1]);
    platform::SerialQueue queue(QStringLiteral("writer"));
    queue.async([&] { storeForever(store, arguments[2].toUInt()); });
    return QCoreApplication::exec();
}
