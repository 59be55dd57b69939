#include "kits/core/default/Outbox.h"

#include "kits/core/default/OutboxInbox.h"
#include "kits/core/default/OutboxWorker.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/foundation/Clock.h"

#include <utility>

namespace kovalin::kits {

namespace {

/// Tells the inbox, at the latest when it is destroyed, that nobody comes.
std::shared_ptr<void> comingTo(const std::shared_ptr<OutboxInbox>& inbox)
{
    return {nullptr, [inbox](void*) {
                inbox->nobodyComes();
            }};
}

std::shared_ptr<platform::SerialQueue> queueOf(const QString& label, const std::weak_ptr<OutboxWorker>& weakWorker)
{
    return std::make_shared<platform::SerialQueue>(label, platform::SerialQueueEvents{[weakWorker] {
                                                       if (const auto worker = weakWorker.lock()) {
                                                           worker->applicationWillEnd();
                                                       }
                                                   }});
}

} // namespace

Outbox::Outbox(OutboxOptions options)
    : _inbox(std::make_shared<OutboxInbox>(options.limits.maxEntries, options.limits.maxBytes))
    , _worker(std::make_shared<OutboxWorker>(options, _inbox))
    , _queue(queueOf(options.label, _worker))
{
    const bool isSomebodyNeeded = options.beginsRefusing && _inbox->eraseAndRefuse();
    _worker->start(_queue);
    if (isSomebodyNeeded) {
        _sendForContent();
    }
}

Outbox::~Outbox()
{
    // Where the queue drops this, the worker goes right here, and writes here.
    _queue->async([worker = std::move(_worker)] {});
}

void Outbox::add(QByteArray bytes)
{
    if (_inbox->add({platform::currentTimeMillis(), std::move(bytes)})) {
        _sendForContent();
    }
}

void Outbox::erase()
{
    if (_inbox->erase()) {
        _sendForContent();
    }
}

void Outbox::eraseAndRefuse()
{
    if (_inbox->eraseAndRefuse()) {
        _sendForContent();
    }
}

void Outbox::accept()
{
    _inbox->accept();
}

void Outbox::_sendForContent()
{
    _queue->async([weakWorker = std::weak_ptr<OutboxWorker>(_worker), coming = comingTo(_inbox)] {
        if (const auto worker = weakWorker.lock()) {
            worker->takeIn();
        }
    });
}

} // namespace kovalin::kits
