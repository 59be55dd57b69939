#include "learned_search/generated-src/Exceptions.h"

#include "platform/foundation/PlatformException.h"

#include <exception>

using kovalin::platform::PlatformException;

namespace djinni {

void throwNSExceptionFromCurrent(const char* /*context*/)
{
    try {
        throw;
    } catch (const PlatformException&) {
        throw;
    } catch (const std::exception& exception) {
        const QString text = QString::fromUtf8(exception.what());
        throw PlatformException(text, text);
    }
}

void throwUnimplemented(const QString& what)
{
    throw PlatformException(QStringLiteral("NSInternalInconsistencyException"),
                            QStringLiteral("Unimplemented: ") + what);
}

} // namespace djinni
