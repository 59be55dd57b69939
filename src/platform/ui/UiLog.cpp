#include "platform/ui/UiLog.h"

namespace kovalin::platform {

Q_LOGGING_CATEGORY(uiLog, "kovalin.platform.ui")

} // namespace kovalin::platform
