#include "kits/core/default/QXSDKHttpAnalyticsEventsQueue.h"

#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/default/AnalyticsBody.h"
#include "kits/core/default/AnalyticsOutbox.h"
#include "platform/foundation/CachesDirectory.h"

#include <QtCore/QUrl>

#include <chrono>

using namespace kovalin;

namespace {

constexpr qsizetype kibibyte = 1024;
constexpr std::chrono::seconds idleTimeout(30);     // of a batch of 64 KiB at the most
constexpr qsizetype maxAnswerBytes = 64 * kibibyte; // nobody reads it

platform::UrlRequest requestFor(const kits::OutboxBatch& batch)
{
    return {.url = QUrl(QXSDKClientSetup::shared()->apiBaseUrl + QStringLiteral("/events")),
            .method = platform::UrlRequest::Method::Post,
            .headers = {{QByteArrayLiteral("Content-Type"), QByteArrayLiteral("application/x-protobuf")}},
            .body = kits::analyticsBody(batch),
            .idleTimeout = idleTimeout,
            .maxAnswerBytes = maxAnswerBytes};
}

// As for metrics; but an event has 100 to 200 bytes, and more with a long search, so as many take more.
kits::OutboxOptions outboxOptions(const QXSDKHttpAnalyticsEventsOptions& options)
{
    const QString folder = options.folder.isEmpty() ? platform::cachesDirectory() : options.folder;
    return {.path = folder + QStringLiteral("/qxsdk-analytics-events.sqlite"),
            .label = QStringLiteral("com.vole.connect.QXSDKHttpAnalyticsEventsQueue"),
            .limits = {.maxBytes = 2048 * kibibyte, .maxEntries = 5000, .maxAge = std::chrono::days(7)},
            .batch = {.maxEntries = 100, .maxBytes = 64 * kibibyte, .longestWait = std::chrono::seconds(30)},
            .retry = {.first = std::chrono::seconds(5),
                      .longest = std::chrono::minutes(15),
                      .longestRetryAfter = std::chrono::hours(1)},
            .request = requestFor};
}

} // namespace

QXSDKHttpAnalyticsEventsQueue::QXSDKHttpAnalyticsEventsQueue(const QXSDKHttpAnalyticsEventsOptions& options)
    : _outbox(kits::AnalyticsOutbox::create(outboxOptions(options)))
{
}

QXSDKHttpAnalyticsEventsQueue::~QXSDKHttpAnalyticsEventsQueue()
{
    _outbox->end();
}

void QXSDKHttpAnalyticsEventsQueue::addEvent(const QXSDKServerEvent& event)
{
    _outbox->add(event.serverEventData);
}
