#include "WatchedApplication.h"

#include <QtCore/QThread>

#include <chrono>
#include <utility>

namespace kovalin::bench {

Nanoseconds clockNow()
{
    using Time = std::chrono::duration<Nanoseconds, std::nano>;
    return Time(std::chrono::steady_clock::now().time_since_epoch()).count();
}

bool WatchedApplication::notify(QObject* receiver, QEvent* event)
{
    if (QThread::currentThread() != thread()) {
        return QCoreApplication::notify(receiver, event);
    }
    bool result = false;
    _holds.push_back(holdOf([&] { result = QCoreApplication::notify(receiver, event); }));
    return result;
}

std::vector<Hold> WatchedApplication::takeHolds()
{
    return std::exchange(_holds, {});
}

} // namespace kovalin::bench
