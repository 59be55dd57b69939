#include "platform/foundation/NotificationCenter.h"

#include <utility>

namespace kovalin::platform {

NotificationCenter& NotificationCenter::defaultCenter()
{
    // Never destroyed: singletons that observe aren't either.
    static auto& center = *new NotificationCenter;
    return center;
}

NotificationCenter& NotificationCenter::qxsdkCenter()
{
    static auto& center = *new NotificationCenter;
    return center;
}

void NotificationCenter::postNotificationName(const QString& name)
{
    std::vector<std::pair<std::shared_ptr<void>, std::shared_ptr<const Entry>>> living;
    {
        const std::scoped_lock lock(_mutex);
        for (const auto& entry : _entries) {
            if (entry->name != name) {
                continue;
            }
            if (auto observer = entry->observer.lock()) {
                living.emplace_back(std::move(observer), entry);
            }
        }
    }
    for (const auto& [observer, entry] : living) {
        if (entry->isMember) {
            entry->call();
        }
    }
}

void NotificationCenter::_add(const std::shared_ptr<void>& observer, std::function<void()> call, const QString& name)
{
    if (!observer) {
        return;
    }
    auto entry = std::make_shared<Entry>();
    entry->observer = observer;
    entry->call = std::move(call);
    entry->name = name;
    const std::scoped_lock lock(_mutex);
    std::erase_if(_entries, [](const auto& old) { return old->observer.expired(); });
    _entries.push_back(std::move(entry));
}

void NotificationCenter::_remove(const std::shared_ptr<void>& observer)
{
    const std::scoped_lock lock(_mutex);
    std::erase_if(_entries, [&observer](const auto& entry) {
        const bool isTheirs = !entry->observer.owner_before(observer) && !observer.owner_before(entry->observer);
        if (isTheirs) {
            entry->isMember = false;
        }
        return isTheirs || entry->observer.expired();
    });
}

} // namespace kovalin::platform
