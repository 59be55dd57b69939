#include "kovalin-host/RunUntil.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QEvent>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

namespace kovalin::host {

namespace {

/// How late a change is seen that another thread makes without an event.
constexpr auto tick = std::chrono::milliseconds(10);

/// No loop runs around it, so that nobody else would see to deletions.
void runEvents(QEventLoop::ProcessEventsFlags flags)
{
    QCoreApplication::processEvents(flags);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

void runDueEvents()
{
    runEvents(QEventLoop::AllEvents);
}

bool runUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit, Qt::PreciseTimer);
    QTimer wakeUp;
    wakeUp.start(tick);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        runEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace kovalin::host
