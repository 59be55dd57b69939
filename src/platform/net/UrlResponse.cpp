#include "platform/net/UrlResponse.h"

namespace kovalin::platform {

std::optional<QByteArray> UrlResponse::header(const QByteArray& name) const
{
    for (const auto& [key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0) {
            return value;
        }
    }
    return std::nullopt;
}

} // namespace kovalin::platform
