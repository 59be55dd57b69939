#pragma once

#include "kits/core/default/OutboxEntry.h"
#include "kits/core/default/OutboxLimits.h"

#include <QtCore/QtGlobal>

#include <cstddef>
#include <deque>
#include <vector>

namespace kovalin::kits {

/// How a store has to change to hold what the memory holds.
struct OutboxChanges {
    std::vector<OutboxEntry> added;
    std::vector<QUuid> removed;
    qint64 dropped = 0; ///< to be added to the count

    [[nodiscard]] bool isEmpty() const { return added.empty() && removed.empty() && dropped == 0; }
};

/// The entries of an outbox, oldest first, within their limits; what the store holds of them; and how many were dropped. One
/// thread. Every entry that was added is here, was taken, or is counted as dropped.
class OutboxMemory final {
public:
    explicit OutboxMemory(OutboxLimits limits);

    /// Takes over what the store held, which is older than what was added here.
    void restore(std::vector<OutboxEntry> entries, quint64 dropped);

    void add(OutboxEntry entry);

    /// Counts entries that were dropped before they got here.
    void countDropped(quint64 count) { _dropped += count; }

    /// Drops what is over its age at `now`, in milliseconds since 1970. What comes from the future stays.
    void dropOld(qint64 now);

    [[nodiscard]] bool isEmpty() const { return _entries.empty(); }
    [[nodiscard]] std::size_t count() const { return _entries.size(); }
    [[nodiscard]] qsizetype bytes() const { return _bytes; }
    [[nodiscard]] quint64 dropped() const { return _dropped; }

    // One batch at a time; none of its entries is dropped while it is out. What was out last is formed again, with its id,
    // where that is still the same.

    /// Not while a batch is out or nothing is here.
    [[nodiscard]] OutboxBatch takeOut(const BatchLimits& limits);
    /// The batch has arrived: forgets it and the dropped ones that it told of.
    void batchArrived();
    /// The batch is given up: its entries are dropped.
    void batchRefused();
    /// The batch stays; a later one may differ.
    void batchReturned() { _out = 0; }

    /// What the store lacks.
    [[nodiscard]] OutboxChanges changes() const;
    [[nodiscard]] bool hasChanges() const;
    /// The store has all changes.
    void changesStored();
    /// The store has nothing any more.
    void nothingStored();

    /// Forgets everything, as does the store.
    void clear();

private:
    struct Kept {
        OutboxEntry entry;
        bool isStored = false;
    };

    /// What a batch held, to know it again.
    struct LastBatch {
        QUuid id;
        std::vector<QUuid> entries;
        quint64 dropped = 0;
    };

    void _drop(std::size_t index);
    void _keepLimits();
    void _remove(std::deque<Kept>::iterator place);
    void _removeOut();

    const OutboxLimits _limits;
    std::deque<Kept> _entries;
    qsizetype _bytes = 0;
    std::size_t _out = 0;      // so many of the first are out
    std::size_t _unstored = 0; // so many entries aren't in the store
    quint64 _dropped = 0;
    quint64 _storedDropped = 0; // as the store has it
    std::vector<QUuid> _gone;   // in the store and not here
    LastBatch _last;
};

} // namespace kovalin::kits
