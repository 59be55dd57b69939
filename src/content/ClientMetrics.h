#pragma once

#include <QtCore/QString>

#include <functional>
#include <utility>

/// Counts and measures a request that ended, under its key with the suffix; nothing where the key is empty. Any thread.
void addRequestMetrics(const QString& metricsKey, double startTime, const QString& suffix);

/// The callback, with the metrics of a success ahead of it. `startTime` is in seconds since 1970.
template <class... Arguments>
std::function<void(Arguments...)> QXSDKKovalinClientSuccessWithMetrics(std::function<void(Arguments...)> success,
                                                                       const QString& metricsKey, double startTime)
{
    return [success = std::move(success), metricsKey, startTime](Arguments... arguments) {
        addRequestMetrics(metricsKey, startTime, QStringLiteral(":success"));
        success(std::forward<Arguments>(arguments)...);
    };
}

/// The callback, with the metrics of a failure ahead of it.
template <class... Arguments>
std::function<void(Arguments...)> QXSDKKovalinClientFailureWithMetrics(std::function<void(Arguments...)> failure,
                                                                       const QString& metricsKey, double startTime)
{
    return [failure = std::move(failure), metricsKey, startTime](Arguments... arguments) {
        addRequestMetrics(metricsKey, startTime, QStringLiteral(":failure"));
        failure(std::forward<Arguments>(arguments)...);
    };
}
