#include "kits/core/default/OutboxMemory.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kovalin::kits {

OutboxMemory::OutboxMemory(OutboxLimits limits)
    : _limits(limits)
{
}

void OutboxMemory::restore(std::vector<OutboxEntry> entries, quint64 dropped)
{
    std::deque<Kept> restored;
    for (OutboxEntry& entry : entries) {
        _bytes += entry.bytes.size();
        restored.push_back({std::move(entry), true});
    }
    _entries.insert(_entries.begin() + static_cast<std::ptrdiff_t>(_out), std::make_move_iterator(restored.begin()),
                    std::make_move_iterator(restored.end()));
    _dropped += dropped;
    _storedDropped += dropped;
    _keepLimits();
}

void OutboxMemory::add(OutboxEntry entry)
{
    if (entry.bytes.size() > _limits.maxBytes) {
        ++_dropped; // It would push out all others, and itself.
        return;
    }
    _bytes += entry.bytes.size();
    ++_unstored;
    _entries.push_back({std::move(entry)});
    _keepLimits();
}

void OutboxMemory::dropOld(qint64 now)
{
    // All are looked at: where the clock was set back, older ones stand behind younger ones.
    for (std::size_t i = _out; i < _entries.size();) {
        if (now - _entries[i].entry.time > _limits.maxAge.count()) {
            _drop(i);
        } else {
            ++i;
        }
    }
}

OutboxBatch OutboxMemory::takeOut(const BatchLimits& limits)
{
    OutboxBatch batch{.id = QUuid::createUuid(), .entries = {}, .dropped = _dropped};
    LastBatch current{.id = batch.id, .entries = {}, .dropped = _dropped};
    qsizetype bytes = 0;
    for (const Kept& kept : _entries) {
        bytes += kept.entry.bytes.size();
        if (!batch.entries.empty() && (batch.entries.size() >= limits.maxEntries || bytes > limits.maxBytes)) {
            break;
        }
        batch.entries.push_back(kept.entry);
        current.entries.push_back(kept.entry.id);
    }
    if (current.entries == _last.entries && current.dropped == _last.dropped) {
        batch.id = current.id = _last.id;
    }
    _last = std::move(current);
    _out = batch.entries.size();
    return batch;
}

void OutboxMemory::batchArrived()
{
    _removeOut();
    _dropped -= _last.dropped;
    _last = {};
}

void OutboxMemory::batchRefused()
{
    _dropped += _out;
    _removeOut();
    _last = {};
}

OutboxChanges OutboxMemory::changes() const
{
    OutboxChanges changes{.added = {}, .removed = _gone, .dropped = static_cast<qint64>(_dropped - _storedDropped)};
    for (const Kept& kept : _entries) {
        if (!kept.isStored) {
            changes.added.push_back(kept.entry);
        }
    }
    return changes;
}

bool OutboxMemory::hasChanges() const
{
    return _unstored > 0 || !_gone.empty() || _dropped != _storedDropped;
}

void OutboxMemory::changesStored()
{
    // Unstored ones stand at the end, but for those that a store lost.
    for (auto kept = _entries.rbegin(); _unstored > 0 && kept != _entries.rend(); ++kept) {
        _unstored -= kept->isStored ? 0 : 1;
        kept->isStored = true;
    }
    _gone.clear();
    _storedDropped = _dropped;
}

void OutboxMemory::nothingStored()
{
    for (Kept& kept : _entries) {
        kept.isStored = false;
    }
    _unstored = _entries.size();
    _gone.clear();
    _storedDropped = 0;
}

void OutboxMemory::clear()
{
    _entries.clear();
    _bytes = 0;
    _out = 0;
    _unstored = 0;
    _dropped = 0;
    _storedDropped = 0;
    _gone.clear();
    _last = {};
}

void OutboxMemory::_drop(std::size_t index)
{
    _remove(_entries.begin() + static_cast<std::ptrdiff_t>(index));
    ++_dropped;
}

void OutboxMemory::_keepLimits()
{
    while (_entries.size() > _out && (_entries.size() > _limits.maxEntries || _bytes > _limits.maxBytes)) {
        _drop(_out);
    }
}

void OutboxMemory::_remove(std::deque<Kept>::iterator place)
{
    _bytes -= place->entry.bytes.size();
    if (place->isStored) {
        _gone.push_back(place->entry.id);
    } else {
        --_unstored;
    }
    _entries.erase(place);
}

void OutboxMemory::_removeOut()
{
    for (; _out > 0; --_out) {
        _remove(_entries.begin());
    }
}

} // namespace kovalin::kits
