#include "platform/foundation/PlatformException.h"

namespace kovalin::platform {

PlatformException::PlatformException(const QString& name, const QString& reason)
    : _name(name)
    , _reason(reason)
    , _what(QString(name + QStringLiteral(": ") + reason).toUtf8())
{
}

PlatformException::~PlatformException() = default;

const char* PlatformException::what() const noexcept
{
    return _what.constData();
}

} // namespace kovalin::platform
