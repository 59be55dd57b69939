#include "support/WaitFor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QEvent>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include <chrono>

namespace kovalin::test {

namespace {

/// How late a change is seen that another thread makes without an event.
constexpr auto tick = std::chrono::milliseconds(5);

} // namespace

bool waitFor(const std::function<bool()>& condition)
{
    const QDeadlineTimer cap(std::chrono::minutes(1));
    QTimer wakeUp;
    wakeUp.start(tick);
    while (!condition()) {
        if (cap.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
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
