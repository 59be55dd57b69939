#include "kits/core/default/QXSDKHttpOperationalMetricsQueue.h"

#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/default/CoreKitLog.h"
#include "kits/core/default/MetricsBody.h"
#include "kits/core/default/Outbox.h"
#include "platform/foundation/CachesDirectory.h"
#include "platform/foundation/Clock.h"
#include "platform/foundation/Log.h"

#include <QtCore/QUrl>

#include <chrono>
#include <cmath>

using namespace kovalin;

namespace {

constexpr qsizetype kibibyte = 1024;
constexpr std::chrono::seconds idleTimeout(30);     // of a batch of 64 KiB at the most
constexpr qsizetype maxAnswerBytes = 64 * kibibyte; // nobody reads it

platform::UrlRequest requestFor(const kits::OutboxBatch& batch)
{
    const auto setup = QXSDKClientSetup::shared();
    return {.url = QUrl(setup->apiBaseUrl + QStringLiteral("/metrics")),
            .method = platform::UrlRequest::Method::Post,
            .headers = {{QByteArrayLiteral("Content-Type"), QByteArrayLiteral("application/json")}},
            .body = kits::metricsBody(batch, setup->clientId),
            .idleTimeout = idleTimeout,
            .maxAnswerBytes = maxAnswerBytes};
}

// Some sessions' worth of metrics, which are a few hundred bytes each at the most, for a week without a network.
kits::OutboxOptions outboxOptions(const QXSDKHttpOperationalMetricsOptions& options)
{
    const QString folder = options.folder.isEmpty() ? platform::cachesDirectory() : options.folder;
    return {.path = folder + QStringLiteral("/qxsdk-operational-metrics.sqlite"),
            .label = QStringLiteral("com.vole.connect.QXSDKHttpOperationalMetricsQueue"),
            .limits = {.maxBytes = 1024 * kibibyte, .maxEntries = 5000, .maxAge = std::chrono::days(7)},
            .batch = {.maxEntries = 100, .maxBytes = 64 * kibibyte, .longestWait = std::chrono::seconds(30)},
            .retry = {.first = std::chrono::seconds(5),
                      .longest = std::chrono::minutes(15),
                      .longestRetryAfter = std::chrono::hours(1)},
            .request = requestFor};
}

} // namespace

QXSDKHttpOperationalMetricsQueue::QXSDKHttpOperationalMetricsQueue(const QXSDKHttpOperationalMetricsOptions& options)
    : _outbox(std::make_unique<kits::Outbox>(outboxOptions(options)))
{
}

QXSDKHttpOperationalMetricsQueue::~QXSDKHttpOperationalMetricsQueue() = default;

void QXSDKHttpOperationalMetricsQueue::addCount(qint64 count, const QString& name)
{
    _outbox->add(kits::countEntry(count, name, platform::currentTimeMillis()));
}

void QXSDKHttpOperationalMetricsQueue::addLatencyFromTime(double startTime, const QString& name)
{
    constexpr double millisPerSecond = 1000;
    const double milliseconds = (platform::currentTimeSeconds() - startTime) * millisPerSecond;
    if (!std::isfinite(milliseconds) || milliseconds < 0) {
        KOVALIN_LOG_WARNING(kovalinCoreKit,
                            QStringLiteral("No latency: %1 took %2 ms").arg(name, QString::number(milliseconds)));
        return;
    }
    _outbox->add(kits::latencyEntry(milliseconds, name, platform::currentTimeMillis()));
}

void QXSDKHttpOperationalMetricsQueue::erase()
{
    _outbox->erase();
}
