#include "kits/core/default/CoreKitLog.h"

Q_LOGGING_CATEGORY(kovalinCoreKit, "kovalin.kits.core.default")
