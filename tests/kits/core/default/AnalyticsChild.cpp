#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/default/OutboxFile.h"
#include "kits/core/default/QXSDKHttpAnalyticsEventsQueue.h"
#include "kits/core/default/ShareEvent.h"
#include "support/WaitFor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>

#include <cstdio>
#include <string>

// analytics_child FOLDER BASE_URL COUNT COUNT: adds so many events, waits until they have been posted and nothing is left on
// disk; then adds so many others and waits until they are on disk; says its process id, and waits to be killed.

namespace {

using namespace kovalin::test;

void waitUntilStored(const QString& folder, int count)
{
    const QString path = folder + QStringLiteral("/qxsdk-analytics-events.sqlite");
    static_cast<void>(waitFor([&] { return storedAt(path).ids.size() == count; }));
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString folder = arguments.at(1);
    const int posted = arguments.at(3).toInt();
    const int left = arguments.at(4).toInt();
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("child"), .apiBaseUrl = arguments.at(2)});
    QXSDKHttpAnalyticsEventsQueue queue({.folder = folder});
    for (int i = 0; i < posted + left; ++i) {
        if (i == posted && posted > 0) {
            // On disk they are first, for a moment that this may miss; posted they are when the parent says so.
            static_cast<void>(waitFor([&] { return QFile::exists(folder + QStringLiteral("/posted")); }));
            waitUntilStored(folder, 0);
        }
        queue.addEvent(shareEvent(std::to_string(i)));
    }
    waitUntilStored(folder, left);
    std::printf("%lld\n", static_cast<long long>(QCoreApplication::applicationPid()));
    std::fflush(stdout);
    static_cast<void>(QCoreApplication::exec());
}
