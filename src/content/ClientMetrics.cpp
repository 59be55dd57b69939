#include "content/ClientMetrics.h"

#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

void addRequestMetrics(const QString& metricsKey, double startTime, const QString& suffix)
{
    if (metricsKey.isEmpty()) {
        return;
    }
    auto& logger = QXSDKKovalinOperationalMetricsLogger::shared();
    logger.addLatencyFromTime(startTime, metricsKey);
    logger.addCount(1, metricsKey + suffix);
}
