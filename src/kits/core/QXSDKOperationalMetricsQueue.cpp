#include "kits/core/QXSDKOperationalMetricsQueue.h"

#include "platform/foundation/SharedSlot.h"

#include <utility>

namespace {

class ForgetfulQueue final : public QXSDKOperationalMetricsQueue {
public:
    void addCount(qint64, const QString&) override {}
    void addLatencyFromTime(double, const QString&) override {}
};

struct Installed {
    kovalin::platform::SharedSlot<QXSDKOperationalMetricsQueue> queue;
    const std::shared_ptr<QXSDKOperationalMetricsQueue> none = std::make_shared<ForgetfulQueue>();
};

Installed& installed()
{
    // Never destroyed: threads may still count while the process ends.
    static auto& state = *new Installed;
    return state;
}

} // namespace

QXSDKOperationalMetricsQueue::~QXSDKOperationalMetricsQueue() = default;

std::shared_ptr<QXSDKOperationalMetricsQueue> QXSDKOperationalMetricsQueue::sharedInstance()
{
    auto queue = installed().queue.load();
    return queue ? queue : installed().none;
}

void QXSDKOperationalMetricsQueue::setSharedInstance(std::shared_ptr<QXSDKOperationalMetricsQueue> queue)
{
    static_cast<void>(installed().queue.exchange(std::move(queue)));
}
