#pragma once

#include <QtCore/QLoggingCategory>

namespace kovalin::platform {

Q_DECLARE_LOGGING_CATEGORY(uiLog)

} // namespace kovalin::platform
