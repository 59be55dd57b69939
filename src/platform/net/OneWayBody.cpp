#include "platform/net/OneWayBody.h"

#include <algorithm>
#include <utility>

namespace kovalin::platform {

OneWayBody::OneWayBody(QByteArray bytes, QObject* parent)
    : QIODevice(parent)
    , _bytes(std::move(bytes))
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 OneWayBody::bytesAvailable() const
{
    return _bytes.size() - _taken + QIODevice::bytesAvailable();
}

qint64 OneWayBody::readData(char* data, qint64 maxSize)
{
    const qint64 size = std::min<qint64>(maxSize, _bytes.size() - _taken);
    if (size == 0 && maxSize > 0) {
        return -1; // The end, and not only nothing for now.
    }
    std::copy_n(_bytes.constData() + _taken, size, data);
    _taken += size;
    return size;
}

qint64 OneWayBody::writeData(const char* /*data*/, qint64 /*size*/)
{
    return -1;
}

} // namespace kovalin::platform
