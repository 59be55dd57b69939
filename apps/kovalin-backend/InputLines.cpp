#include "kovalin-backend/InputLines.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace kovalin::backend {

InputLines::InputLines(Handlers handlers)
    : _handlers(std::move(handlers))
    , _notifier(STDIN_FILENO, QSocketNotifier::Read)
{
    QObject::connect(&_notifier, &QSocketNotifier::activated, &_notifier, [this] { _read(); });
}

void InputLines::_read()
{
    std::array<char, 4096> bytes; // as much as is there, so that nothing waits for more
    const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count > 0) {
        _rest.append(bytes.data(), count);
        _takeLines();
        return;
    }
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
        return;
    }
    _notifier.setEnabled(false);
    if (!_rest.isEmpty()) {
        _handlers.lineCame(std::exchange(_rest, {}));
    }
    _handlers.ended();
}

void InputLines::_takeLines()
{
    qsizetype end = 0;
    while ((end = _rest.indexOf('\n')) >= 0) {
        QByteArray line = _rest.first(end);
        _rest.remove(0, end + 1);
        if (line.endsWith('\r')) {
            line.chop(1);
        }
        _handlers.lineCame(line);
    }
    if (_rest.size() > kLongestLine) {
        _handlers.lineCame(std::exchange(_rest, {}));
    }
}

} // namespace kovalin::backend
