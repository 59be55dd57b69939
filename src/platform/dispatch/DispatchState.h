#pragma once

#include "platform/dispatch/DelayTimer.h"
#include "platform/dispatch/EndListeners.h"
#include "platform/dispatch/GlobalQueueState.h"
#include "platform/dispatch/MainQueueState.h"
#include "platform/dispatch/SerialWorkers.h"
#include "platform/dispatch/ThreadQueues.h"

#include <QtCore/QtGlobal>

#include <atomic>

QT_BEGIN_NAMESPACE
class QThread;
QT_END_NAMESPACE

namespace kovalin::platform {

/// What the queues of the process share, and the one place that ties them to the application object. Private to this
/// folder. Any thread.
///
/// Lifetime: made on first use and never destroyed, so that neither a static object's destructor nor a thread that
/// still runs while the process exits can meet a dead mutex. What has to end, ends earlier, with the application
/// object:
///
/// - Its constructor opens the queues (a Qt startup function, called again for each later application object). Jobs
/// that
///   came to serial queues and the global queue before the first one start now.
/// - Its destructor closes them (a Qt post routine, armed anew for each application object, which comes first of all in
///   the destructor). Intake ends and pending jobs are dropped on all queues, and only then are running jobs waited
///   for: a job that waits for another one's promise sees it broken instead of hanging. In between, the serial queues
///   that have something to do at the end get it as their last job. Then the worker threads are joined, so none is left
///   for the exit of the process. Queues with a thread of their own are told at once, so that what they wait for from
///   outside ends, but run on to the last, since jobs that are waited for may need their answers.
///
/// A process that calls `std::exit` under a living application object gets neither; its workers run on until it is
/// gone, and touch nothing here that the exit destroys.
struct DispatchState {
    [[nodiscard]] static DispatchState& shared();

    SerialWorkers serial;
    GlobalQueueState global;
    MainQueueState main;
    ThreadQueues threads;
    DelayTimer timer;
    EndListeners endListeners;

    /// The thread of the newest application object, living or not; null before the first. Only to be compared with.
    std::atomic<const QThread*> mainThread = nullptr;
};

} // namespace kovalin::platform
