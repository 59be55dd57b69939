#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include "QXSDKKovalinKit/Version.h"
#include "kits/core/QXSDKOperationalMetricsQueue.h"
#include "platform/foundation/Random.h"

#include <utility>

namespace {

/// Wraps around where it overflows, as sums of such numbers do.
qint64 sumOf(const QList<qint64>& counts)
{
    quint64 sum = 0;
    for (const qint64 count : counts) {
        sum += static_cast<quint64>(count);
    }
    return static_cast<qint64>(sum);
}

} // namespace

QXSDKKovalinOperationalMetricsLogger& QXSDKKovalinOperationalMetricsLogger::shared()
{
    static auto& logger = *new QXSDKKovalinOperationalMetricsLogger(QString::fromLatin1(QXSDKKovalinKitVersionString));
    return logger;
}

QXSDKKovalinOperationalMetricsLogger::QXSDKKovalinOperationalMetricsLogger(const QString& bundleVersion)
    : _prefix(QString(bundleVersion).replace(u'.', u'_') + QStringLiteral(":kovalin:"))
    , _dispatchQueue(QStringLiteral("com.vole.connect.QXSDKKovalinOperationalMetricsLogger"))
{
}

void QXSDKKovalinOperationalMetricsLogger::addCount(qint64 count, const QString& name)
{
    _dispatchQueue.async([counters = _counters, count, name] { (*counters)[name].append(count); });
}

void QXSDKKovalinOperationalMetricsLogger::addLatencyFromTime(double startTime, const QString& name)
{
    addLatencyFromTime(startTime, name, 1.0F);
}

void QXSDKKovalinOperationalMetricsLogger::addLatencyFromTime(double startTime, const QString& name, float sampleRate)
{
    const auto drawn = static_cast<float>(kovalin::platform::arc4random() % 100);
    if (drawn < 100.0F * sampleRate) {
        QXSDKOperationalMetricsQueue::sharedInstance()->addLatencyFromTime(startTime, _prefix + name);
    }
}

void QXSDKKovalinOperationalMetricsLogger::pushToQueue()
{
    _dispatchQueue.async([counters = _counters, prefix = _prefix] {
        const Counters flushed = std::exchange(*counters, {});
        for (auto entry = flushed.cbegin(); entry != flushed.cend(); ++entry) {
            if (const qint64 sum = sumOf(entry.value()); sum > 0) {
                QXSDKOperationalMetricsQueue::sharedInstance()->addCount(sum, prefix + entry.key());
            }
        }
    });
}
