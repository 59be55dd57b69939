#include "kits/core/default/QXSDKHttpDynamicConfigManager.h"

#include "kits/core/default/ConfigFetch.h"
#include "kits/core/default/CoreKitLog.h"
#include "kits/core/default/KnownConfigs.h"
#include "kits/core/default/RetryAfter.h"
#include "kits/core/default/RetryDelay.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/foundation/CachesDirectory.h"
#include "platform/foundation/Clock.h"
#include "platform/foundation/Log.h"
#include "platform/foundation/Random.h"
#include "platform/foundation/SharedSlot.h"
#include "platform/net/UrlSession.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>
#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>

#include <chrono>
#include <mutex>
#include <optional>
#include <utility>

using namespace kovalin::kits;
using namespace kovalin::platform;

namespace {

constexpr qsizetype maxBytes = qsizetype(1024) * 1024; // of an answer, and of the file

// A picker shows nothing before the configurations were refreshed or failed to be.
constexpr std::chrono::seconds idleTimeout(10);

constexpr RetryRules retryRules{
    .first = std::chrono::seconds(30), .longest = std::chrono::hours(1), .longestRetryAfter = std::chrono::hours(1)};

constexpr int httpOk = 200;

/// What came of a fetch.
struct FetchEnd {
    KnownConfigsPtr known; // null for a failure
    std::optional<std::chrono::milliseconds> retryAfter = std::nullopt;
    QString reason = {}; // of a failure, for the log
};

FetchEnd endOf(const ConfigSource& source, const QByteArray& data, const std::optional<UrlResponse>& response,
               const std::optional<UrlError>& error)
{
    if (error || !response) {
        return {.known = nullptr, .reason = error ? error->text : QString()};
    }
    const qint64 now = currentTimeMillis();
    if (response->statusCode != httpOk) {
        const QByteArray retryAfter = response->header(QByteArrayLiteral("Retry-After")).value_or(QByteArray());
        return {.known = nullptr,
                .retryAfter = retryAfterIn(retryAfter, now),
                .reason = QStringLiteral("the server answered %1").arg(response->statusCode)};
    }
    return {.known = configsInAnswer(data, source, now), .reason = QStringLiteral("the answer has no configurations")};
}

UrlRequest requestFor(const ConfigSource& source)
{
    QUrl url(source.apiBaseUrl + QStringLiteral("/configs"));
    QUrlQuery query;
    // All that means something in a query is escaped, also what QUrlQuery would leave.
    query.addQueryItem(QStringLiteral("client_id"), QString::fromLatin1(QUrl::toPercentEncoding(source.clientId)));
    url.setQuery(query);
    return {.url = url, .idleTimeout = idleTimeout, .maxAnswerBytes = maxBytes};
}

KnownConfigsPtr readFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return nullptr;
    }
    const QByteArray content = file.read(maxBytes + 1);
    auto known = content.size() <= maxBytes ? configsInStoredForm(content) : nullptr;
    if (!known) {
        KOVALIN_LOG_WARNING(kovalinCoreKit, QStringLiteral("%1 holds no configurations").arg(path));
    }
    return known;
}

void writeFile(const QString& path, const QByteArray& content)
{
    QSaveFile file(path);
    const bool isWritten = content.size() <= maxBytes && QDir().mkpath(QFileInfo(path).path()) &&
                           file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit();
    if (!isWritten) {
        KOVALIN_LOG_WARNING(kovalinCoreKit, QStringLiteral("Can't store %1").arg(path));
    }
}

} // namespace

struct QXSDKHttpDynamicConfigManager::State final : std::enable_shared_from_this<State> {
    explicit State(QString filePath)
        : path(std::move(filePath))
        , known(readFile(path))
    {
    }

    /// What is known for this source; null where nothing is.
    [[nodiscard]] KnownConfigsPtr knownFor(const ConfigSource& source) const
    {
        auto all = known.load();
        return all && all->source == source ? all : nullptr;
    }

    /// The outcome without a fetch; absent when a fetch is due. With `mutex` held.
    [[nodiscard]] std::optional<bool> outcomeWithoutFetch(const ConfigSource& source) const
    {
        const qint64 now = currentTimeMillis();
        if (const auto current = knownFor(source); current && current->areFresh(now)) {
            return true;
        }
        const bool isLeftAlone =
            failures > 0 && failedSource == source && now >= failedAt && now - failedAt < leftAloneFor.count();
        return isLeftAlone ? std::optional(false) : std::nullopt;
    }

    void start(const std::shared_ptr<ConfigFetch>& newFetch, const ConfigSource& source)
    {
        auto newTask = UrlSession::shared().dataTask(
            requestFor(source), [weak = weak_from_this(), newFetch, source](const QByteArray& data,
                                                                            const std::optional<UrlResponse>& response,
                                                                            const std::optional<UrlError>& error) {
                const FetchEnd end = endOf(source, data, response, error);
                const auto self = weak.lock();
                newFetch->finish(self && self->ended(newFetch, source, end));
            });
        {
            const std::lock_guard lock(mutex);
            task = newTask;
        }
        newTask->resume();
    }

    /// True if there are fresh configurations now.
    [[nodiscard]] bool ended(const std::shared_ptr<ConfigFetch>& endedFetch, const ConfigSource& source,
                             const FetchEnd& end)
    {
        if (!end.known) {
            KOVALIN_LOG_WARNING(kovalinCoreKit, QStringLiteral("No new configurations: %1").arg(end.reason));
        }
        const std::lock_guard lock(mutex);
        if (fetch.lock() != endedFetch) {
            return false; // Another client setup's has begun since.
        }
        fetch.reset();
        if (!end.known) {
            failures = failedSource == source ? failures + 1 : 1;
            failedSource = source;
            failedAt = currentTimeMillis();
            leftAloneFor = retryDelay(retryRules, failures, end.retryAfter, kovalin::platform::arc4random());
            return false;
        }
        failures = 0;
        known.store(end.known);
        queue.async([path = path, stored = end.known] { writeFile(path, storedForm(*stored)); });
        return true;
    }

    const QString path;
    SharedSlot<const KnownConfigs> known;
    SerialQueue queue{QStringLiteral("com.vole.connect.QXSDKHttpDynamicConfigManager")}; // writes the file

    std::mutex mutex;                          // held for a few steps, and never while anything of a caller's runs
    std::weak_ptr<ConfigFetch> fetch;          // guarded by mutex; the one under way, which its task keeps
    ConfigSource fetchSource;                  // guarded by mutex
    std::weak_ptr<DataTask> task;              // guarded by mutex; of the last fetch
    int failures = 0;                          // guarded by mutex; in a row, as the next three
    ConfigSource failedSource;                 // guarded by mutex
    qint64 failedAt = 0;                       // guarded by mutex; milliseconds since 1970
    std::chrono::milliseconds leftAloneFor{0}; // guarded by mutex
};

QXSDKHttpDynamicConfigManager::QXSDKHttpDynamicConfigManager(const QXSDKHttpDynamicConfigOptions& options)
    : _state(std::make_shared<State>((options.folder.isEmpty() ? cachesDirectory() : options.folder) +
                                     QStringLiteral("/qxsdk-dynamic-configs.json")))
{
}

QXSDKHttpDynamicConfigManager::~QXSDKHttpDynamicConfigManager()
{
    std::shared_ptr<DataTask> task;
    {
        const std::lock_guard lock(_state->mutex);
        task = _state->task.lock();
    }
    if (task) {
        task->cancel();
    }
}

std::shared_ptr<const QXSDKDynamicConfig> QXSDKHttpDynamicConfigManager::dynamicConfig(const QString& name) const
{
    const auto known = _state->knownFor(ConfigSource::current());
    return known ? known->configs.value(name) : nullptr;
}

void QXSDKHttpDynamicConfigManager::updateIfNecessary(UpdateCompletion completion)
{
    const ConfigSource source = ConfigSource::current();
    // Before the lock, so that the last reference, with which completions run, never goes under it.
    std::shared_ptr<ConfigFetch> joined;
    std::shared_ptr<ConfigFetch> begun;
    std::optional<bool> outcome;
    {
        const std::lock_guard lock(_state->mutex);
        joined = _state->fetch.lock();
        if (joined && _state->fetchSource == source && joined->join(completion)) {
            return;
        }
        outcome = _state->outcomeWithoutFetch(source);
        if (!outcome) {
            begun = std::make_shared<ConfigFetch>();
            static_cast<void>(begun->join(completion));
            _state->fetch = begun;
            _state->fetchSource = source;
        }
    }
    if (outcome) {
        completion(*outcome);
    } else {
        _state->start(begun, source);
    }
}
