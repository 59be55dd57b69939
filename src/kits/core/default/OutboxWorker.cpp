#include "kits/core/default/OutboxWorker.h"

#include "kits/core/default/CoreKitLog.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/foundation/Clock.h"
#include "platform/foundation/Log.h"
#include "platform/foundation/Random.h"

#include <utility>

namespace kovalin::kits {

namespace {

// Entries come in bursts, and a transaction costs far more than an entry in it. A second is what a crash may cost; half of it
// leaves the other half to a busy machine.
constexpr std::chrono::milliseconds kWriteDelay(500);

// How often a disk that refused is tried again.
constexpr std::chrono::seconds kDiskRetryDelay(30);

} // namespace

OutboxWorker::OutboxWorker(const OutboxOptions& options, std::shared_ptr<OutboxInbox> inbox)
    : _options(options)
    , _inbox(std::move(inbox))
    , _memory(options.limits)
    , _disk(options.path)
{
}

OutboxWorker::~OutboxWorker()
{
    _sender.cancel();
    static_cast<void>(_empty());
    _storeIfNecessary();
}

void OutboxWorker::start(std::shared_ptr<platform::SerialQueue> queue)
{
    _queue = std::move(queue);
    _queue->async([weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            if (self->_inbox->isErased()) {
                static_cast<void>(self->_empty()); // what is to be forgotten mustn't be posted first
            }
            self->_writeInTime();
        }
    });
}

void OutboxWorker::takeIn()
{
    if (_empty()) {
        _write();
    } else {
        _scheduleWrite();
    }
    _considerSending();
}

void OutboxWorker::applicationWillEnd()
{
    static_cast<void>(_empty());
    _stopSending();
    _writeDelay.cancel();
    _storeIfNecessary();
}

bool OutboxWorker::_empty()
{
    OutboxInbox::Content content = _inbox->take();
    if (content.isErased) {
        _stopSending();
        _failures = 0;
        _memory.clear();
        _isEraseDue = true;
    }
    _memory.countDropped(content.dropped);
    for (OutboxInbox::Entry& entry : content.entries) {
        _memory.add({.id = QUuid::createUuid(), .time = entry.time, .bytes = std::move(entry.bytes)});
    }
    return content.isErased;
}

void OutboxWorker::_writeInTime()
{
    _write();
    _considerSending();
}

void OutboxWorker::_write()
{
    _writeDelay.cancel();
    _isDiskWell = _store();
    _scheduleWrite();
}

void OutboxWorker::_storeIfNecessary()
{
    if (_isEraseDue || _memory.hasChanges()) {
        static_cast<void>(_store());
    }
}

bool OutboxWorker::_store()
{
    return _load() && _applyChanges();
}

bool OutboxWorker::_load()
{
    if (_isEraseDue) {
        if (_disk.erase() == OutboxStore::Result::Failed) {
            return false;
        }
        _isEraseDue = false;
        _isLoaded = true;
    }
    if (!_isLoaded) {
        auto content = _disk.load();
        if (!content) {
            return false;
        }
        _memory.restore(std::move(content->entries), content->dropped);
        _isLoaded = true;
    }
    return true;
}

bool OutboxWorker::_applyChanges()
{
    _memory.dropOld(platform::currentTimeMillis());
    if (!_memory.hasChanges()) {
        return true;
    }
    auto result = _disk.apply(_memory.changes());
    if (result == OutboxStore::Result::MadeAnew) {
        _memory.nothingStored();
        result = _disk.apply(_memory.changes());
    }
    if (result != OutboxStore::Result::Done) {
        return false;
    }
    _memory.changesStored();
    return true;
}

void OutboxWorker::_scheduleWrite()
{
    const bool isSomethingToDo = !_isLoaded || _isEraseDue || _memory.hasChanges();
    if (isSomethingToDo && !_writeDelay.isPending()) {
        _writeDelay = _later(_isDiskWell ? kWriteDelay : kDiskRetryDelay, &OutboxWorker::_writeInTime);
    }
}

void OutboxWorker::_considerSending()
{
    if (_sending == Sending::UnderWay || _sending == Sending::BackingOff) {
        return;
    }
    const bool isEnough = _memory.count() >= _options.batch.maxEntries || _memory.bytes() >= _options.batch.maxBytes;
    if (_memory.isEmpty()) {
        _stopSending();
    } else if (isEnough) {
        _send();
    } else if (_sending == Sending::Idle) {
        _sending = Sending::Waiting;
        _sendDelay = _later(_options.batch.longestWait, &OutboxWorker::_send);
    }
}

void OutboxWorker::_send()
{
    _stopSending();
    // On disk before it leaves; without a disk it leaves all the same.
    _memory.dropOld(platform::currentTimeMillis());
    _write();
    if (_memory.isEmpty() || _inbox->isErased()) {
        return; // Where all this is to be forgotten, the job that does it is on its way.
    }
    const OutboxBatch batch = _memory.takeOut(_options.batch);
    _sending = Sending::UnderWay;
    _sender.send(_options.request(batch),
                 [queue = _queue, weak = weak_from_this(), number = _attempt](const SendOutcome& outcome) {
                     queue->async([weak, number, outcome] {
                         if (const auto self = weak.lock()) {
                             self->_sent(number, outcome);
                         }
                     });
                 });
}

void OutboxWorker::_sent(quint64 number, const SendOutcome& outcome)
{
    if (number != _attempt || _sending != Sending::UnderWay) {
        return; // Broken off meanwhile.
    }
    _sending = Sending::Idle;
    switch (outcome.kind) {
    case SendOutcome::Kind::Arrived:
        _memory.batchArrived();
        _failures = 0;
        break;
    case SendOutcome::Kind::Refused:
        KOVALIN_LOG_WARNING(kovalinCoreKit,
                            QStringLiteral("%1 gives up a batch: %2").arg(_options.label, outcome.reason));
        _memory.batchRefused();
        _failures = 0;
        break;
    case SendOutcome::Kind::Failed:
        _memory.batchReturned();
        _backOff(outcome);
        return;
    }
    _write();
    _considerSending();
}

void OutboxWorker::_backOff(const SendOutcome& outcome)
{
    const auto delay = retryDelay(_options.retry, ++_failures, outcome.retryAfter, platform::arc4random());
    // One line for a row of failures, which may last for days.
    if (_failures == 1) {
        KOVALIN_LOG_WARNING(
            kovalinCoreKit,
            QStringLiteral("%1 can't post, and goes on trying: %2").arg(_options.label, outcome.reason));
    }
    _sending = Sending::BackingOff;
    _sendDelay = _later(delay, &OutboxWorker::_send);
}

void OutboxWorker::_stopSending()
{
    _sendDelay.cancel();
    if (_sending == Sending::UnderWay) {
        ++_attempt;
        _sender.cancel();
        _memory.batchReturned();
    }
    _sending = Sending::Idle;
}

platform::DelayedJob OutboxWorker::_later(std::chrono::milliseconds delay, void (OutboxWorker::*job)())
{
    return _queue->asyncAfter(delay, [weak = weak_from_this(), job] {
        if (const auto self = weak.lock()) {
            (self.get()->*job)();
        }
    });
}

} // namespace kovalin::kits
