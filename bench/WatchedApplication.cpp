#include "WatchedApplication.h"

#include <QtCore/QThread>

#include <utility>

namespace kovalin::bench {

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
