#include "platform/dispatch/DispatchState.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>

namespace kovalin::platform {

namespace {

void closeQueues()
{
    DispatchState& state = DispatchState::shared();
    state.threads.announceEnd();
    state.serial.close();
    state.global.close();
    state.main.close();
    state.timer.close();
    state.endListeners.tell();
    state.global.waitForRunningJobs();
    state.serial.waitForRunningJobs();
    state.threads.close();
}

void openQueues()
{
    DispatchState& state = DispatchState::shared();
    qAddPostRoutine(closeQueues);
    state.mainThread = QCoreApplication::instance()->thread();
    state.main.open();
    state.global.open();
    state.serial.open();
    state.threads.open();
    state.timer.open();
}

} // namespace

// Arms itself when the library is loaded, not on first use: a first use on another thread could fall into the very
// moment in which the main thread makes the application object, and be missed by it.
Q_COREAPP_STARTUP_FUNCTION(openQueues)

DispatchState& DispatchState::shared()
{
    static auto* const state = new DispatchState;
    return *state;
}

} // namespace kovalin::platform
