#pragma once

#include <QtCore/QLoggingCategory>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <mutex>

namespace kovalin::test {

/// Collects the log's lines instead of writing them, from its making to its end. One at a time; any thread logs.
class LogLines final {
public:
    LogLines()
    {
        const std::lock_guard lock(mutex());
        lines().clear();
        _previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
            const std::lock_guard handlerLock(mutex());
            lines().append(text);
        });
    }
    ~LogLines() { qInstallMessageHandler(_previous); }
    Q_DISABLE_COPY_MOVE(LogLines)

    /// How many of the lines so far contain the text.
    [[nodiscard]] static qsizetype count(const QString& text)
    {
        const std::lock_guard lock(mutex());
        return lines().filter(text).size();
    }

private:
    // Static, since a message handler is a plain function.
    static std::mutex& mutex()
    {
        static std::mutex one;
        return one;
    }
    static QStringList& lines()
    {
        static QStringList all;
        return all;
    }

    QtMessageHandler _previous = nullptr;
};

} // namespace kovalin::test
