#pragma once

#include "kits/core/default/BatchSender.h"
#include "kits/core/default/Outbox.h"
#include "kits/core/default/OutboxInbox.h"
#include "kits/core/default/OutboxMemory.h"
#include "kits/core/default/OutboxStore.h"
#include "platform/dispatch/DelayedJob.h"

#include <QtCore/QtGlobal>

#include <chrono>
#include <memory>

namespace kovalin::platform {
class SerialQueue;
} // namespace kovalin::platform

namespace kovalin::kits {

/// What an outbox does on its queue: ties the memory to the store and to the sender. Everything but its making and its end
/// happens there; jobs and answers hold it weakly, so that it ends with the outbox.
class OutboxWorker final : public std::enable_shared_from_this<OutboxWorker> {
public:
    OutboxWorker(const OutboxOptions& options, std::shared_ptr<OutboxInbox> inbox);
    /// Writes what isn't on disk yet.
    ~OutboxWorker();
    Q_DISABLE_COPY_MOVE(OutboxWorker)

    /// Begins on this queue, with what is on disk. Once, before anything else.
    void start(std::shared_ptr<platform::SerialQueue> queue);

    /// Takes what lies in the inbox.
    void takeIn();

    /// Writes what isn't on disk yet, and ends the rest. Should another application object come, the next entry begins anew.
    void applicationWillEnd();

private:
    enum class Sending {
        Idle,
        Waiting,    ///< for more entries
        UnderWay,   ///< a batch is out
        BackingOff, ///< waiting before another attempt
    };

    [[nodiscard]] bool _empty(); // the inbox; true if everything before was to be forgotten
    void _writeInTime();
    void _write();
    void _storeIfNecessary();
    [[nodiscard]] bool _store();
    [[nodiscard]] bool _load();
    [[nodiscard]] bool _applyChanges();
    void _scheduleWrite();
    void _considerSending();
    void _send();
    void _sent(quint64 number, const SendOutcome& outcome);
    void _backOff(const SendOutcome& outcome);
    void _stopSending();
    [[nodiscard]] platform::DelayedJob _later(std::chrono::milliseconds delay, void (OutboxWorker::*job)());

    const OutboxOptions _options;
    const std::shared_ptr<OutboxInbox> _inbox;
    std::shared_ptr<platform::SerialQueue> _queue;
    OutboxMemory _memory;
    OutboxStore _disk;
    bool _isLoaded = false;   // the memory has what the disk had
    bool _isEraseDue = false; // the disk has what is to be forgotten
    bool _isDiskWell = true;  // the last attempt went well
    platform::DelayedJob _writeDelay;
    Sending _sending = Sending::Idle;
    platform::DelayedJob _sendDelay; // while Waiting or BackingOff
    BatchSender _sender;
    quint64 _attempt = 0; // counts the requests, to know late answers
    int _failures = 0;    // in a row
};

} // namespace kovalin::kits
