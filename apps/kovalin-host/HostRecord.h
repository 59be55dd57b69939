#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <map>
#include <mutex>
#include <vector>

namespace kovalin::host {

/// What the library has told its host, since it was last asked for. Any thread.
class HostRecord final {
public:
    HostRecord() = default;
    ~HostRecord();
    Q_DISABLE_COPY_MOVE(HostRecord)

    /// From here to its end the lines of the log come here, and to the end of that file, and nowhere else. One record at a time.
    void takeLogLines(const QString& file);

    /// A call of the delegate's, with its "call".
    void addDelegateCall(const QJsonObject& call);
    /// "linked", "failed" or "unlinked".
    void addLogin(const QString& what);
    /// An address that was to be opened outside.
    void addOpened(const QString& url);
    /// A "ServerEventData" message.
    void addAnalyticsEvent(const QByteArray& message);
    void addCount(qint64 count, const QString& name);
    void addLatency(double milliseconds, const QString& name);

    /// Whether a delegate's call, a login, an address, an analytics event or a metric of that name is among it.
    [[nodiscard]] bool has(const QString& name) const;
    /// Whether a line of the log has this text in it.
    [[nodiscard]] bool hasLogged(const QString& text) const;

    /// {"delegate":[…],"login":[…],"opened":[…],"analytics":[…],"metrics":{"counts":{name:n},"latencies":{name:[ms]}},"log":[…]},
    /// each in its order; from here on it is forgotten.
    [[nodiscard]] QJsonObject take();

private:
    void addLogLine(const QString& line);

    mutable std::mutex _mutex;
    // Guarded by it:
    QJsonArray _delegateCalls;
    QStringList _logins;
    QStringList _opened;
    std::vector<QByteArray> _analytics;
    std::map<QString, qint64> _counts;
    std::map<QString, QJsonArray> _latencies;
    QStringList _log;
    QFile _logFile;
};

} // namespace kovalin::host
