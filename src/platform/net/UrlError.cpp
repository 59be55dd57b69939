#include "platform/net/UrlError.h"

namespace kovalin::platform {

const char* nameOf(UrlError::Kind kind)
{
    switch (kind) {
    case UrlError::Kind::Cancelled:
        return "Cancelled";
    case UrlError::Kind::TimedOut:
        return "TimedOut";
    case UrlError::Kind::CannotConnect:
        return "CannotConnect";
    case UrlError::Kind::HostNotFound:
        return "HostNotFound";
    case UrlError::Kind::ConnectionLost:
        return "ConnectionLost";
    case UrlError::Kind::TooLarge:
        return "TooLarge";
    case UrlError::Kind::UnsafeRedirect:
        return "UnsafeRedirect";
    case UrlError::Kind::TooManyRedirects:
        return "TooManyRedirects";
    case UrlError::Kind::TlsFailed:
        return "TlsFailed";
    case UrlError::Kind::BadUrl:
        return "BadUrl";
    case UrlError::Kind::Other:
        break;
    }
    return "Other";
}

} // namespace kovalin::platform
