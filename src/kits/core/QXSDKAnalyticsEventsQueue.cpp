#include "kits/core/QXSDKAnalyticsEventsQueue.h"

#include "platform/foundation/SharedSlot.h"

#include <utility>

namespace {

class ForgetfulQueue final : public QXSDKAnalyticsEventsQueue {
public:
    void addEvent(const QXSDKServerEvent&) override {}
};

struct Installed {
    kovalin::platform::SharedSlot<QXSDKAnalyticsEventsQueue> queue;
    const std::shared_ptr<QXSDKAnalyticsEventsQueue> none = std::make_shared<ForgetfulQueue>();
};

Installed& installed()
{
    // Never destroyed: threads may still log while the process ends.
    static auto& state = *new Installed;
    return state;
}

} // namespace

QXSDKAnalyticsEventsQueue::~QXSDKAnalyticsEventsQueue() = default;

std::shared_ptr<QXSDKAnalyticsEventsQueue> QXSDKAnalyticsEventsQueue::sharedInstance()
{
    auto queue = installed().queue.load();
    return queue ? queue : installed().none;
}

void QXSDKAnalyticsEventsQueue::setSharedInstance(std::shared_ptr<QXSDKAnalyticsEventsQueue> queue)
{
    static_cast<void>(installed().queue.exchange(std::move(queue)));
}
