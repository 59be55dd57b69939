#include "platform/store/ImageKey.h"

#include <QtCore/QByteArrayView>
#include <QtCore/QCryptographicHash>

namespace kovalin::platform {

ImageKey imageKey(const QString& key)
{
    // The UTF-16 as it is: in UTF-8 all halves of surrogate pairs would be one character.
    const QByteArrayView units(reinterpret_cast<const char*>(key.constData()),
                               key.size() * static_cast<qsizetype>(sizeof(QChar)));
    return QCryptographicHash::hash(units, QCryptographicHash::Sha256);
}

} // namespace kovalin::platform
