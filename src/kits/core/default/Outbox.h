#pragma once

#include "kits/core/default/OutboxEntry.h"
#include "kits/core/default/OutboxLimits.h"
#include "kits/core/default/RetryDelay.h"
#include "platform/net/UrlRequest.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QtGlobal>

#include <functional>
#include <memory>

namespace kovalin::platform {
class SerialQueue;
} // namespace kovalin::platform

namespace kovalin::kits {

class OutboxInbox;
class OutboxWorker;

/// What an outbox is for.
struct OutboxOptions {
    QString path;  ///< of the file that keeps the entries; its folder is made when it is needed
    QString label; ///< of the queue, and in log lines
    OutboxLimits limits;
    BatchLimits batch;
    RetryRules retry;
    /// Whether it begins as after `eraseAndRefuse`: nothing that is on disk is posted first.
    bool beginsRefusing = false;
    /// The request that posts a batch. Called on the outbox's queue, again for each attempt; mustn't throw.
    std::function<platform::UrlRequest(const OutboxBatch& batch)> request;
};

/// A queue of entries that are kept on disk and posted in batches. Any thread.
///
/// - **Kept.** What was added is on disk half a second later, or earlier, before it is posted; from then on it survives the
///   death of the process. What was added before the application object dies is written while it dies, which takes one
///   transaction. A disk that is full or can't be written leaves the entries in memory; it is tried again every half
///   minute and before each batch.
/// - **Bounded.** Of more than the limits allow the oldest are dropped, but for those that are being posted. How many were
///   dropped is kept too, and told with the next batch.
/// - **Posted.** One request at a time, oldest first. 2xx ends a batch. 4xx but 408 and 429 ends it too: its entries are
///   dropped. Anything else is tried again after a growing delay, with what there is then.
/// - **At least once.** An entry isn't posted again after an answer of 2xx, unless the process dies before that is on disk. One
///   whose answer got lost is posted again, with the same id.
///
/// Several processes may share a file; each posts what it added, and what it found there when it began.
///
/// Lifetime: destroying it writes what isn't on disk yet, on the queue, and cancels what is being posted.
class Outbox final {
public:
    explicit Outbox(OutboxOptions options);
    ~Outbox();
    Q_DISABLE_COPY_MOVE(Outbox)

    /// Adds an entry, at the time of now. Takes an append, whatever lies here already.
    void add(QByteArray bytes);

    /// Forgets everything that was added before, on disk too, and breaks off what is being posted: that may have arrived, but
    /// isn't posted again; nothing else of it leaves. A disk that can't be written is tried until it can.
    void erase();

    /// The same, and what is added from now on is never taken; it isn't counted as dropped either. Which of an `add` and this comes
    /// first is decided at once, not on the queue.
    void eraseAndRefuse();

    /// Takes entries again, from now on.
    void accept();

    /// Where the outbox works; a job here runs when what was added before has been taken in.
    [[nodiscard]] const std::shared_ptr<platform::SerialQueue>& queue() const { return _queue; }

private:
    void _sendForContent();

    const std::shared_ptr<OutboxInbox> _inbox;
    std::shared_ptr<OutboxWorker> _worker;
    const std::shared_ptr<platform::SerialQueue> _queue;
};

} // namespace kovalin::kits
