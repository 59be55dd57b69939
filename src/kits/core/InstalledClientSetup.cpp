#include "kits/core/InstalledClientSetup.h"

#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/SharedSlot.h"

#include <mutex>
#include <utility>

namespace kovalin::kits {

namespace {

struct Installation {
    std::mutex replacing; // held from reading the old setup to storing the new one
    platform::SharedSlot<const InstalledClientSetup> setup{std::make_shared<const InstalledClientSetup>()};
};

Installation& installation()
{
    // Never destroyed: threads may still ask while the process ends.
    static auto& state = *new Installation;
    return state;
}

} // namespace

std::shared_ptr<const InstalledClientSetup> installedClientSetup()
{
    return installation().setup.load();
}

void installClientSetup(QXSDKClientSetup setup)
{
    auto next = std::make_shared<InstalledClientSetup>();
    next->setup = std::move(setup);
    {
        const std::lock_guard lock(installation().replacing);
        const auto previous = installation().setup.load();
        const bool isOptOut = previous->setup.isAnalyticsEnabled && !next->setup.isAnalyticsEnabled;
        next->optOuts = previous->optOuts + (isOptOut ? 1 : 0);
        installation().setup.store(std::move(next));
    }
    platform::NotificationCenter::qxsdkCenter().postNotificationName(kQXSDKClientSetupDidChangeNotification);
}

} // namespace kovalin::kits
