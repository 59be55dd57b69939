#include "platform/foundation/KeyedArchiver.h"

#include "platform/foundation/KeyedArchiveFormat.h"
#include "platform/foundation/PlatformException.h"

#include <QtCore/QSaveFile>

#include <QtGui/QRgba64>

namespace kovalin::platform {

namespace {

[[noreturn]] void throwArchiveException(const QString& reason)
{
    throw PlatformException(QStringLiteral("KeyedArchiveException"), reason);
}

} // namespace

KeyedArchiver::KeyedArchiver(int depth)
    : _depth(depth)
{
    if (depth > KeyedArchiveFormat::kMaximumObjectDepth) {
        throwArchiveException(QStringLiteral("objects lie in each other deeper than %1 levels")
                                  .arg(KeyedArchiveFormat::kMaximumObjectDepth));
    }
}

void KeyedArchiver::encodeObject(const QString& key, const QString& text)
{
    _map.insert(key, text);
}

void KeyedArchiver::encodeObject(const QString& key, const QStringList& texts)
{
    _map.insert(key, QCborArray::fromStringList(texts));
}

void KeyedArchiver::encodeBool(const QString& key, bool value)
{
    _map.insert(key, value);
}

void KeyedArchiver::encodeInteger(const QString& key, qint64 value)
{
    _map.insert(key, value);
}

void KeyedArchiver::encodeDouble(const QString& key, double value)
{
    _map.insert(key, value);
}

void KeyedArchiver::_encodeColor(const QString& key, const QColor& color)
{
    if (color.isValid()) {
        const QRgba64 channels = color.rgba64();
        _map.insert(key, QCborArray{channels.red(), channels.green(), channels.blue(), channels.alpha()});
    }
}

QByteArray KeyedArchiver::_bytes(const QCborValue& root)
{
    const std::optional<QByteArray> bytes = KeyedArchiveFormat::bytesOfArchive(root);
    if (!bytes) {
        throwArchiveException(QStringLiteral("more than an archive can hold"));
    }
    return *bytes;
}

bool KeyedArchiver::_write(const QCborValue& root, const QString& path)
{
    const std::optional<QByteArray> bytes = KeyedArchiveFormat::bytesOfArchive(root);
    if (!bytes) {
        return false;
    }
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(*bytes) == bytes->size() && file.commit();
}

} // namespace kovalin::platform
