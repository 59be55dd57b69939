#include "kovalin-backend/accounts/FormValues.h"

#include <QtCore/QUrl>

namespace kovalin::backend {

FormValues::FormValues(QByteArray encoded)
{
    const QList<QByteArray> pairs = encoded.replace('+', ' ').split('&');
    for (const QByteArray& pair : pairs) {
        if (!pair.isEmpty()) {
            const qsizetype sign = pair.indexOf('=');
            _values.emplaceBack(QUrl::fromPercentEncoding(sign < 0 ? pair : pair.first(sign)),
                                sign < 0 ? QString() : QUrl::fromPercentEncoding(pair.sliced(sign + 1)));
        }
    }
}

QString FormValues::value(QStringView name) const
{
    for (const auto& [key, value] : _values) {
        if (key == name) {
            return value;
        }
    }
    return {};
}

} // namespace kovalin::backend
