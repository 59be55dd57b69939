#pragma once

#include <QtCore/QtGlobal>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace kovalin::platform {

/// A set of observers that it doesn't keep alive: an observer needn't leave before it dies. Not thread-safe: one thread
/// at a time, though the observers may die on any thread at any time.
///
/// What a function called by forEach() may do, including walks inside a walk:
/// - add an observer: the walks under way don't visit it, later ones do;
/// - remove an observer: a walk that hasn't come to it yet leaves it out, also if it is added again;
/// - drop the last reference to an observer: a walk under way holds those that were alive when it began, visits them,
/// and
///   lets go of them at its end;
/// - destroy the set: the walks under way visit nobody else.
///
/// Entries of dead observers are swept whenever one is added or removed and whenever a walk begins.
template <class T>
class WeakSet final {
public:
    WeakSet() = default;
    WeakSet(const WeakSet&) = delete;
    WeakSet& operator=(const WeakSet&) = delete;

    ~WeakSet()
    {
        for (const auto& entry : _entries) {
            entry->isMember = false;
        }
    }

    /// Does nothing for null and for an observer that is already in the set.
    void add(const std::shared_ptr<T>& observer)
    {
        _sweep();
        if (observer && _find(observer.get()) == _entries.end()) {
            _entries.push_back(std::make_shared<Entry>(Entry{observer.get(), observer, true}));
        }
    }

    /// Does nothing for null and for an observer that isn't in the set. An observer's own destructor may call it.
    void remove(const T* observer)
    {
        _sweep();
        if (const auto found = _find(observer); found != _entries.end()) {
            (*found)->isMember = false;
            _entries.erase(found);
        }
    }

    void remove(const std::shared_ptr<T>& observer) { remove(observer.get()); }

    /// Calls `visit` with a reference to each living observer, in the order in which they were added. An exception that
    /// `visit` throws ends the walk and leaves this function.
    template <class Visit>
    void forEach(Visit&& visit)
    {
        _sweep();
        std::vector<std::pair<std::shared_ptr<T>, std::shared_ptr<const Entry>>> snapshot;
        snapshot.reserve(_entries.size());
        for (const auto& entry : _entries) {
            if (auto observer = entry->observer.lock()) {
                snapshot.emplace_back(std::move(observer), entry);
            }
        }
        // From here on only the snapshot is touched: the set may be gone after any visit.
        for (const auto& [observer, entry] : snapshot) {
            if (entry->isMember) {
                visit(*observer);
            }
        }
    }

    /// How many of the observers are alive.
    [[nodiscard]] qsizetype count() const
    {
        return std::ranges::count_if(_entries, [](const auto& entry) { return !entry->observer.expired(); });
    }

    /// Whether no observer is alive.
    [[nodiscard]] bool isEmpty() const { return count() == 0; }

private:
    // The address is compared and never followed: locking the weak pointer instead could make us the last owner, and
    // the observer's destructor would run in the midst of a search. An address is only compared after a sweep, so that
    // a dead observer can't stand for a new one at its address.
    struct Entry {
        const T* address;
        std::weak_ptr<T> observer;
        bool isMember;
    };
    using Entries = std::vector<std::shared_ptr<Entry>>;

    void _sweep()
    {
        std::erase_if(_entries, [](const auto& entry) { return entry->observer.expired(); });
    }

    [[nodiscard]] typename Entries::iterator _find(const T* observer)
    {
        return std::ranges::find(_entries, observer, [](const auto& entry) { return entry->address; });
    }

    Entries _entries;
};

} // namespace kovalin::platform
