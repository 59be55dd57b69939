#include "kits/core/QXSDKClientSetup.h"

#include "platform/foundation/SharedSlot.h"

#include <utility>

namespace {

kovalin::platform::SharedSlot<const QXSDKClientSetup>& installedSetup()
{
    // Never destroyed: threads may still ask while the process ends.
    static auto& setup =
        *new kovalin::platform::SharedSlot<const QXSDKClientSetup>(std::make_shared<const QXSDKClientSetup>());
    return setup;
}

} // namespace

std::shared_ptr<const QXSDKClientSetup> QXSDKClientSetup::shared()
{
    return installedSetup().load();
}

void QXSDKClientSetup::setShared(QXSDKClientSetup setup)
{
    installedSetup().store(std::make_shared<const QXSDKClientSetup>(std::move(setup)));
}
