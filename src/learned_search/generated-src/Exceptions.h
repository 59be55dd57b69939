#pragma once

#include <QtCore/QString>

#include <utility>

namespace djinni {

/// To be called while an exception is handled, and throws it on: a standard exception as a PlatformException whose name and
/// reason are both what it says; a PlatformException, which comes from an executor, and an exception of any other type
/// unchanged. `context` names the operation for whoever debugs it, and takes no part in the message.
[[noreturn]] void throwNSExceptionFromCurrent(const char* context);

/// Throws the PlatformException "NSInternalInconsistencyException" with the reason "Unimplemented: " and `what`.
[[noreturn]] void throwUnimplemented(const QString& what);

/// What `call` returns; what it throws is translated as above. The form of every operation of a wrapper.
template <class Call>
auto guarded(const char* context, Call&& call)
{
    try {
        return std::forward<Call>(call)();
    } catch (...) {
        throwNSExceptionFromCurrent(context);
    }
}

} // namespace djinni
