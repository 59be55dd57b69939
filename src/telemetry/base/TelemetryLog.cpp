#include "telemetry/base/TelemetryLog.h"

Q_LOGGING_CATEGORY(kovalinTelemetry, "kovalin.telemetry")
