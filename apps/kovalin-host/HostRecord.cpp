#include "kovalin-host/HostRecord.h"

#include "events/EventBatchReader.h"
#include "kits/core/default/AnalyticsBody.h"

#include <QtCore/QUuid>

#include <algorithm>
#include <atomic>
#include <utility>

namespace kovalin::host {

namespace {

/// A message handler is a plain function.
std::atomic<HostRecord*> logReader = nullptr;

/// As a server reads them.
QList<analytics::Event> decoded(const std::vector<QByteArray>& messages)
{
    kits::OutboxBatch batch{.id = QUuid::createUuid(), .entries = {}, .dropped = 0};
    for (const QByteArray& message : messages) {
        batch.entries.push_back({.id = QUuid::createUuid(), .time = 0, .bytes = message});
    }
    const auto read = analytics::readEventBatch(kits::analyticsBody(batch));
    const auto* const events = std::get_if<analytics::EventBatch>(&read);
    return events ? events->events : QList<analytics::Event>();
}

QJsonObject jsonOf(const analytics::Event& event)
{
    QJsonObject json = event.toJson();
    // Of the batch that it was read from, which nobody sent.
    for (const QString& key : {QStringLiteral("batch_id"), QStringLiteral("event_id"), QStringLiteral("time_millis")}) {
        json.remove(key);
    }
    return json;
}

} // namespace

HostRecord::~HostRecord()
{
    if (logReader.exchange(nullptr)) {
        qInstallMessageHandler(nullptr);
    }
}

void HostRecord::takeLogLines(const QString& file)
{
    {
        const std::scoped_lock lock(_mutex);
        _logFile.setFileName(file);
        static_cast<void>(_logFile.open(QIODevice::WriteOnly | QIODevice::Truncate)); // the record has them in any case
    }
    logReader = this;
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) {
        if (auto* const reader = logReader.load()) {
            reader->addLogLine(line);
        }
    });
}

void HostRecord::addLogLine(const QString& line)
{
    const std::scoped_lock lock(_mutex);
    _log.append(line);
    if (_logFile.isOpen()) {
        _logFile.write(line.toUtf8() + '\n');
        _logFile.flush();
    }
}

void HostRecord::addDelegateCall(const QJsonObject& call)
{
    const std::scoped_lock lock(_mutex);
    _delegateCalls.append(call);
}

void HostRecord::addLogin(const QString& what)
{
    const std::scoped_lock lock(_mutex);
    _logins.append(what);
}

void HostRecord::addOpened(const QString& url)
{
    const std::scoped_lock lock(_mutex);
    _opened.append(url);
}

void HostRecord::addAnalyticsEvent(const QByteArray& message)
{
    const std::scoped_lock lock(_mutex);
    _analytics.push_back(message);
}

void HostRecord::addCount(qint64 count, const QString& name)
{
    const std::scoped_lock lock(_mutex);
    _counts[name] += count;
}

void HostRecord::addLatency(double milliseconds, const QString& name)
{
    const std::scoped_lock lock(_mutex);
    _latencies[name].append(milliseconds);
}

bool HostRecord::has(const QString& name) const
{
    const std::scoped_lock lock(_mutex);
    const auto isCall = [&name](const QJsonValue& call) {
        return call[u"call"].toString() == name;
    };
    const auto isEvent = [&name](const analytics::Event& event) {
        return event.name == name;
    };
    return std::any_of(_delegateCalls.begin(), _delegateCalls.end(), isCall) || _logins.contains(name) ||
           _opened.contains(name) || std::ranges::any_of(decoded(_analytics), isEvent) || _counts.contains(name) ||
           _latencies.contains(name);
}

bool HostRecord::hasLogged(const QString& text) const
{
    const std::scoped_lock lock(_mutex);
    return std::ranges::any_of(_log, [&text](const QString& line) { return line.contains(text); });
}

QJsonObject HostRecord::take()
{
    const std::scoped_lock lock(_mutex);
    QJsonArray events;
    for (const auto& event : decoded(std::exchange(_analytics, {}))) {
        events.append(jsonOf(event));
    }
    QJsonObject counts;
    for (const auto& [name, count] : std::exchange(_counts, {})) {
        counts.insert(name, count);
    }
    QJsonObject latencies;
    for (const auto& [name, list] : std::exchange(_latencies, {})) {
        latencies.insert(name, list);
    }
    return {
        {QStringLiteral("delegate"), std::exchange(_delegateCalls, {})},
        {QStringLiteral("login"), QJsonArray::fromStringList(std::exchange(_logins, {}))},
        {QStringLiteral("opened"), QJsonArray::fromStringList(std::exchange(_opened, {}))},
        {QStringLiteral("analytics"), events},
        {QStringLiteral("metrics"),
         QJsonObject{{QStringLiteral("counts"), counts}, {QStringLiteral("latencies"), latencies}}},
        {QStringLiteral("log"), QJsonArray::fromStringList(std::exchange(_log, {}))},
    };
}

} // namespace kovalin::host
