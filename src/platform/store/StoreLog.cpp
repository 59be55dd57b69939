#include "platform/store/StoreLog.h"

namespace kovalin::platform {

Q_LOGGING_CATEGORY(storeLog, "kovalin.platform.store")

} // namespace kovalin::platform
