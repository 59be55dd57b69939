#include "kits/core/QXSDKClientSetup.h"

#include "kits/core/InstalledClientSetup.h"

#include <utility>

std::shared_ptr<const QXSDKClientSetup> QXSDKClientSetup::shared()
{
    auto installed = kovalin::kits::installedClientSetup();
    const QXSDKClientSetup* const setup = &installed->setup;
    return {std::move(installed), setup};
}

void QXSDKClientSetup::setShared(QXSDKClientSetup setup)
{
    kovalin::kits::installClientSetup(std::move(setup));
}
