#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSocketNotifier>

#include <functional>

namespace kovalin::backend {

/// The lines of standard input as they come, without their ends ("\n" or "\r\n"), from the event loop. One thread.
class InputLines final {
public:
    struct Handlers {
        std::function<void(const QByteArray& line)> lineCame;
        std::function<void()> ended; ///< Once: after the last line, or when standard input can't be read.
    };

    /// A longer line comes in pieces.
    static constexpr qsizetype kLongestLine = qsizetype(64) * 1024;

    explicit InputLines(Handlers handlers);

private:
    void _read();
    void _takeLines();

    const Handlers _handlers;
    QSocketNotifier _notifier;
    QByteArray _rest; // what came behind the last line
};

} // namespace kovalin::backend
