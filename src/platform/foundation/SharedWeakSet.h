#pragma once

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace kovalin::platform {

/// A set of observers that it doesn't keep alive, like `WeakSet`, for several threads: any operation may be called on any
/// thread at any time, also inside a walk.
///
/// A walk visits the observers that were in the set and alive when it began, in the order in which they were added, on the
/// calling thread and with no lock held. One that is removed meanwhile isn't visited any more, unless its visit has begun.
/// The observers live at least until the walk ends.
template <class T>
class SharedWeakSet final {
public:
    SharedWeakSet() = default;
    SharedWeakSet(const SharedWeakSet&) = delete;
    SharedWeakSet& operator=(const SharedWeakSet&) = delete;

    /// Does nothing for null and for an observer that is already in the set.
    void add(const std::shared_ptr<T>& observer)
    {
        if (!observer) {
            return;
        }
        const std::scoped_lock lock(_mutex);
        _sweep();
        if (std::ranges::none_of(_entries, [&](const auto& entry) { return entry->address == observer.get(); })) {
            _entries.push_back(std::make_shared<Entry>(observer));
        }
    }

    /// Does nothing for null and for an observer that isn't in the set. An observer's own destructor may call it.
    void remove(const T* observer)
    {
        const std::scoped_lock lock(_mutex);
        _sweep();
        const auto found = std::ranges::find(_entries, observer, [](const auto& entry) { return entry->address; });
        if (found != _entries.end()) {
            (*found)->isMember = false;
            _entries.erase(found);
        }
    }

    /// Calls `visit` with a reference to each observer. An exception that `visit` throws ends the walk and leaves this
    /// function.
    template <class Visit>
    void forEach(Visit&& visit)
    {
        // Strong references are let go of without the mutex: an observer's destructor may come back here.
        for (const auto& [observer, entry] : _living()) {
            if (entry->isMember) {
                visit(*observer);
            }
        }
    }

private:
    // The address is compared and never followed; a dead observer's entry is swept before, so that it can't stand for a new
    // one at the same place.
    struct Entry {
        explicit Entry(const std::shared_ptr<T>& member)
            : address(member.get())
            , observer(member)
        {
        }
        const T* const address;
        const std::weak_ptr<T> observer;
        std::atomic<bool> isMember = true;
    };
    using Living = std::vector<std::pair<std::shared_ptr<T>, std::shared_ptr<const Entry>>>;

    Living _living()
    {
        Living living;
        const std::scoped_lock lock(_mutex);
        _sweep();
        living.reserve(_entries.size());
        for (const auto& entry : _entries) {
            if (auto observer = entry->observer.lock()) {
                living.emplace_back(std::move(observer), entry);
            }
        }
        return living;
    }

    void _sweep()
    {
        std::erase_if(_entries, [](const auto& entry) { return entry->observer.expired(); });
    }

    std::mutex _mutex;
    std::vector<std::shared_ptr<Entry>> _entries;
};

} // namespace kovalin::platform
