#include "platform/dispatch/ThreadQueue.h"

#include "platform/dispatch/CleanStop.h"
#include "platform/dispatch/DispatchState.h"
#include "platform/dispatch/ThreadQueueCore.h"

#include <utility>

namespace kovalin::platform {

ThreadQueue::ThreadQueue(QString label, ThreadQueueEvents events)
    : _core(std::make_shared<ThreadQueueCore>(std::move(label), std::move(events)))
{
    DispatchState::shared().threads.add(_core);
}

ThreadQueue::~ThreadQueue()
{
    _core->retire();
}

const QString& ThreadQueue::label() const
{
    return _core->label();
}

void ThreadQueue::async(std::function<void()> job)
{
    _core->add(std::move(job));
}

bool ThreadQueue::isCurrent() const
{
    return _core->isCurrent();
}

void ThreadQueue::assertOnQueue(const SourceLocation& where) const
{
    if (!isCurrent()) {
        cleanStop("Not on the thread queue \"" + label().toStdString() + '"', where);
    }
}

} // namespace kovalin::platform
