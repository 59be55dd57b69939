#pragma once

#include "content/QXSDKKovalinCache.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include <memory>

namespace kovalin::bench {

/// A cache of pictures that has one for every address in memory. An address that ends in a number after its last "/"
/// has the picture of that sticker. The logger has to outlive it.
[[nodiscard]] std::shared_ptr<QXSDKKovalinCache> newFullCache(QXSDKKovalinOperationalMetricsLogger& logger);

} // namespace kovalin::bench
