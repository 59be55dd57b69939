#include "platform/dispatch/DelayedTask.h"

#include "platform/dispatch/DispatchState.h"
#include "platform/dispatch/ThreadCheck.h"

#include <QtCore/QTimer>

#include <algorithm>
#include <utility>

namespace kovalin::platform {

// QTimer counts milliseconds in an int.
constexpr std::chrono::milliseconds kLongestDelay = std::chrono::days(24);

DelayedTask::DelayedTask(std::chrono::milliseconds delay, std::function<void()> block)
{
    // A child of this context, the timer and the block in it go when the application object goes.
    QObject* const context = DispatchState::shared().main.context();
    if (context == nullptr) {
        return;
    }
    assertOnMainThread();
    _timer = new QTimer(context);
    _timer->setSingleShot(true);
    _timer->setTimerType(Qt::PreciseTimer); // A coarse one may overtake another that is due a little earlier.
    QObject::connect(_timer, &QTimer::timeout, _timer,
                     [timer = _timer.data(), block = std::move(block)]() mutable noexcept {
                         // The block is taken out, so that it goes right after it ran whatever becomes of the timer
                         // inside it.
                         const std::function<void()> running = std::exchange(block, nullptr);
                         timer->deleteLater();
                         running();
                     });
    _timer->start(std::clamp(delay, std::chrono::milliseconds(0), kLongestDelay));
}

DelayedTask::~DelayedTask()
{
    cancel();
}

void DelayedTask::cancel()
{
    if (isPending()) {
        assertOnMainThread();
        delete _timer.data();
    }
}

bool DelayedTask::isPending() const
{
    // A timer whose block runs or ran lives on until its deferred deletion.
    return _timer != nullptr && _timer->isActive();
}

} // namespace kovalin::platform
