#pragma once

#include <QtCore/QString>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace kovalin::platform {

/// Tells observers of events by name. Any thread.
///
/// - An observer is held weakly: it needn't leave before it dies.
/// - A post calls the observers of the name on the posting thread, in the order in which they were added, with no lock
///   held; they live until the post is over. Observers that are added meanwhile aren't called, those that are removed
///   before their turn aren't either.
class NotificationCenter final {
public:
    /// The centre for what the platform tells. Made on first use, never destroyed.
    [[nodiscard]] static NotificationCenter& defaultCenter();

    /// The centre for what the kits tell each other. Made on first use, never destroyed.
    [[nodiscard]] static NotificationCenter& qxsdkCenter();

    NotificationCenter() = default;
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    /// Calls `handler` of `observer` at each post of the name, once for each time that it was added.
    template <class T>
    void addObserver(const std::shared_ptr<T>& observer, void (T::*handler)(), const QString& name)
    {
        // The observer is alive while this runs: the post holds it.
        _add(
            observer, [target = observer.get(), handler] { (target->*handler)(); }, name);
    }

    /// Takes the observer away from all names.
    template <class T>
    void removeObserver(const std::shared_ptr<T>& observer)
    {
        _remove(observer);
    }

    void postNotificationName(const QString& name);

private:
    struct Entry {
        std::weak_ptr<void> observer;
        std::function<void()> call;
        QString name;
        std::atomic<bool> isMember = true;
    };

    void _add(const std::shared_ptr<void>& observer, std::function<void()> call, const QString& name);
    void _remove(const std::shared_ptr<void>& observer);

    std::mutex _mutex;
    std::vector<std::shared_ptr<Entry>> _entries; // guarded by _mutex
};

} // namespace kovalin::platform
