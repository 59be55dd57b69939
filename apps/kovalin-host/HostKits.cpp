#include "kovalin-host/HostKits.h"

#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/QXSDKURLOpener.h"
#include "kits/core/default/QXSDKHttpAnalyticsEventsQueue.h"
#include "kits/core/default/QXSDKHttpDynamicConfigManager.h"
#include "kits/core/default/QXSDKHttpOperationalMetricsQueue.h"
#include "kits/login/default/QXSDKOAuthLoginClient.h"
#include "kovalin-host/FileTokenStore.h"
#include "kovalin-host/HostRecord.h"
#include "kovalin-host/RunUntil.h"
#include "platform/foundation/CachesDirectory.h"
#include "platform/foundation/Clock.h"
#include "platform/net/UrlSession.h"

#include <QtCore/QUrlQuery>

#include <atomic>
#include <chrono>
#include <utility>

using kovalin::platform::UrlSession;

namespace kovalin::host {

namespace {

constexpr int statusNoContent = 204;

/// Keeps events for the script, and passes them on.
class RecordedAnalytics final : public QXSDKAnalyticsEventsQueue {
public:
    explicit RecordedAnalytics(std::shared_ptr<HostRecord> record)
        : _record(std::move(record))
    {
    }
    void addEvent(const QXSDKServerEvent& event) override
    {
        _record->addAnalyticsEvent(event.serverEventData);
        _queue.addEvent(event);
    }

private:
    const std::shared_ptr<HostRecord> _record;
    QXSDKHttpAnalyticsEventsQueue _queue;
};

/// The same for metrics.
class RecordedMetrics final : public QXSDKOperationalMetricsQueue {
public:
    explicit RecordedMetrics(std::shared_ptr<HostRecord> record)
        : _record(std::move(record))
    {
    }
    void addCount(qint64 count, const QString& name) override
    {
        _record->addCount(count, name);
        _queue.addCount(count, name);
    }
    void addLatencyFromTime(double startTime, const QString& name) override
    {
        constexpr double millisPerSecond = 1000;
        _record->addLatency((platform::currentTimeSeconds() - startTime) * millisPerSecond, name);
        _queue.addLatencyFromTime(startTime, name);
    }

private:
    const std::shared_ptr<HostRecord> _record;
    QXSDKHttpOperationalMetricsQueue _queue;
};

/// Nothing is opened while a script runs, which nobody watches.
class RecordedOpener final : public QXSDKURLOpener {
public:
    explicit RecordedOpener(std::shared_ptr<HostRecord> record)
        : _record(std::move(record))
    {
    }
    [[nodiscard]] bool canOpenURL(const QUrl& /*url*/) override { return false; }
    void openURL(const QUrl& url, Completion completion) override
    {
        _record->addOpened(url.toString());
        if (completion) {
            completion(true);
        }
    }

private:
    const std::shared_ptr<HostRecord> _record;
};

/// A user who agrees to what the page asks for, unless the server has a rule for the page.
bool agree(const QUrl& url)
{
    QUrl page = url;
    QUrlQuery query(page);
    query.addQueryItem(QStringLiteral("auto"), QStringLiteral("approve"));
    page.setQuery(query);
    UrlSession::shared().dataTask({.url = page}, [](const auto&, const auto&, const auto&) {})->resume();
    return true;
}

QXSDKOAuthLoginOptions loginOptions(const HostOptions& options)
{
    QXSDKOAuthLoginOptions login;
    if (options.isScripted()) {
        login.openUrl = agree;
    }
    login.tokenStore =
        options.keepsLogin
            ? std::make_shared<FileTokenStore>(options.cachesFolder + QStringLiteral("/kovalin-host-login.json"))
            : QXSDKTokenStore::memory();
    return login;
}

} // namespace

HostKits::HostKits(const HostOptions& options, const std::shared_ptr<HostRecord>& record)
{
    platform::setCachesDirectory(options.cachesFolder);
    if (!options.backend) {
        _backend = std::make_unique<backend::Backend>(backend::BackendOptions{
            .contentFolder = options.contentFolder,
            .events = {.requestCame = {}, .metricsCame = {}, .faultFound = [](const QString& fault) {
                           qWarning().noquote() << fault;
                       }}});
    }
    _baseUrl = _backend ? _backend->baseUrl() : *options.backend;
    const QString base = _baseUrl.toString(QUrl::StripTrailingSlash);
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("kovalin-host"),
                                 .contentBaseUrl = base,
                                 .authenticationBaseUrl = base + QStringLiteral("/accounts"),
                                 .apiBaseUrl = base + QStringLiteral("/api"),
                                 .avatarAppStoreUrl = QStringLiteral("itms-apps://store.example/app/avatar")});
    if (options.isScripted()) {
        QXSDKURLOpener::setShared(std::make_shared<RecordedOpener>(record));
    }
    QXSDKDynamicConfigManager::setShared(std::make_shared<QXSDKHttpDynamicConfigManager>());
    QXSDKAnalyticsEventsQueue::setSharedInstance(std::make_shared<RecordedAnalytics>(record));
    QXSDKOperationalMetricsQueue::setSharedInstance(std::make_shared<RecordedMetrics>(record));
    QXSDKLoginClient::setShared(std::make_shared<QXSDKOAuthLoginClient>(loginOptions(options)));
}

HostKits::~HostKits()
{
    QXSDKLoginClient::setShared(nullptr);
    QXSDKURLOpener::setShared(nullptr);
    QXSDKOperationalMetricsQueue::setSharedInstance(nullptr);
    QXSDKAnalyticsEventsQueue::setSharedInstance(nullptr);
    QXSDKDynamicConfigManager::setShared(nullptr);
}

void HostKits::refreshConfigs() const
{
    constexpr auto longestWait = std::chrono::seconds(2);
    const auto isOver = std::make_shared<std::atomic<bool>>(false);
    QXSDKDynamicConfigManager::shared()->updateIfNecessary([isOver](bool /*isFresh*/) { *isOver = true; });
    static_cast<void>(runUntil([&isOver] { return isOver->load(); }, longestWait));
}

void HostKits::setAnswer(const QByteArray& rule, const std::function<void(const QString& fault)>& done) const
{
    if (_backend) {
        const auto read = backend::PathRule::fromText(rule);
        if (const auto* const fault = std::get_if<QString>(&read)) {
            done(*fault);
            return;
        }
        _backend->setAnswer(std::get<backend::PathRule>(read));
        done({});
        return;
    }
    QUrl url = _baseUrl;
    url.setPath(QStringLiteral("/control/answers"));
    const auto answered = [done](const auto&, const auto& response, const auto&) {
        const bool isTaken = response && response->statusCode == statusNoContent;
        done(isTaken ? QString() : QStringLiteral("the server doesn't take it"));
    };
    UrlSession::shared()
        .dataTask({.url = url, .method = platform::UrlRequest::Method::Post, .body = rule}, answered)
        ->resume();
}

} // namespace kovalin::host
