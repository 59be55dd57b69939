#include "kits/core/default/OutboxInbox.h"

#include <utility>

namespace kovalin::kits {

OutboxInbox::OutboxInbox(std::size_t maxEntries, qsizetype maxBytes)
    : _maxEntries(maxEntries)
    , _maxBytes(maxBytes)
{
}

bool OutboxInbox::add(Entry entry)
{
    const std::lock_guard lock(_mutex);
    if (_isRefusing) {
        return false;
    }
    if (entry.bytes.size() > _maxBytes) {
        ++_content.dropped; // It would push out all others, and itself.
        return !std::exchange(_isSomebodyComing, true);
    }
    _bytes += entry.bytes.size();
    _content.entries.push_back(std::move(entry));
    while (_content.entries.size() > _maxEntries || _bytes > _maxBytes) {
        _bytes -= _content.entries.front().bytes.size();
        _content.entries.pop_front();
        ++_content.dropped;
    }
    return !std::exchange(_isSomebodyComing, true);
}

bool OutboxInbox::erase()
{
    Content erased; // goes after the lock
    const std::lock_guard lock(_mutex);
    return _erase(erased);
}

bool OutboxInbox::eraseAndRefuse()
{
    Content erased; // goes after the lock
    const std::lock_guard lock(_mutex);
    _isRefusing = true;
    return _erase(erased);
}

void OutboxInbox::accept()
{
    const std::lock_guard lock(_mutex);
    _isRefusing = false;
}

bool OutboxInbox::isErased() const
{
    const std::lock_guard lock(_mutex);
    return _content.isErased;
}

OutboxInbox::Content OutboxInbox::take()
{
    const std::lock_guard lock(_mutex);
    _isSomebodyComing = false;
    _bytes = 0;
    return std::exchange(_content, {});
}

void OutboxInbox::nobodyComes()
{
    const std::lock_guard lock(_mutex);
    _isSomebodyComing = false;
}

bool OutboxInbox::_erase(Content& erased)
{
    erased = std::exchange(_content, Content{.isErased = true});
    _bytes = 0;
    return !std::exchange(_isSomebodyComing, true);
}

} // namespace kovalin::kits
