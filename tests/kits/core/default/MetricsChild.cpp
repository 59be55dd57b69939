#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/default/OutboxFile.h"
#include "kits/core/default/QXSDKHttpOperationalMetricsQueue.h"
#include "support/WaitFor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>

#include <cstddef>
#include <cstdio>

// metrics_child FOLDER BASE_URL COUNT COUNT: adds so many counts, waits until they have been posted and nothing is left on disk;
// then adds so many others and waits until they are on disk; says its process id, and waits to be killed.

namespace {

void waitUntilStored(const QString& path, std::size_t count)
{
    static_cast<void>(kovalin::test::waitFor([&] { return kovalin::test::storedAt(path).entries.size() == count; }));
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString folder = arguments.at(1);
    const QString path = folder + QStringLiteral("/qxsdk-operational-metrics.sqlite");
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("child"), .apiBaseUrl = arguments.at(2)});
    QXSDKHttpOperationalMetricsQueue queue({.folder = folder});
    int number = 0;
    for (const int argument : {3, 4}) {
        const int count = arguments.at(argument).toInt();
        for (int i = 0; i < count; ++i) {
            queue.addCount(1, QString::number(number++));
        }
        if (argument == 3 && count > 0) {
            // On disk they are first, for a moment that this may miss; posted they are when the parent says so.
            static_cast<void>(
                kovalin::test::waitFor([&] { return QFile::exists(folder + QStringLiteral("/posted")); }));
            waitUntilStored(path, 0);
        }
    }
    waitUntilStored(path, arguments.at(4).toULongLong());
    std::printf("%lld\n", static_cast<long long>(QCoreApplication::applicationPid()));
    std::fflush(stdout);
    static_cast<void>(QCoreApplication::exec());
}
