#include "support/WaitFor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QEvent>
#include <QtCore/QEventLoop>

#include <chrono>

namespace kovalin::test {

bool waitFor(const std::function<bool()>& condition)
{
    const QDeadlineTimer cap(std::chrono::minutes(1));
    while (!condition()) {
        if (cap.hasExpired()) {
            return false;
        }
        // The short slice only bounds how late a change made by another thread without an event is seen.
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 10);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

void drainMainQueue()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace kovalin::test
