#include "platform/dispatch/ThreadCheck.h"

#include "platform/dispatch/CleanStop.h"
#include "platform/dispatch/DispatchState.h"

#include <QtCore/QThread>

namespace kovalin::platform {

bool isMainThread()
{
    const QThread* const main = DispatchState::shared().mainThread.load();
    // Qt takes the first thread that asks for itself for the main one, so no thread asks before there is an
    // application.
    return main != nullptr && QThread::currentThread() == main;
}

void assertOnMainThread(const SourceLocation& where)
{
    if (!isMainThread()) {
        cleanStop("Not on the main thread", where);
    }
}

} // namespace kovalin::platform
