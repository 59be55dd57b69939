#include "platform/foundation/KeyedUnarchiver.h"

#include "platform/foundation/KeyedArchiveFormat.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <QtGui/QRgba64>

#include <array>
#include <limits>

namespace kovalin::platform {

using KeyedArchiveFormat::kindOf;
using KeyedArchiveFormat::throwUnarchiveException;

namespace {

[[noreturn]] void throwWrongKind(const QString& key, const QString& wanted, const QString& found)
{
    throwUnarchiveException(QStringLiteral("key \"") + key + QStringLiteral("\": ") + wanted +
                            QStringLiteral(" wanted, ") + found + QStringLiteral(" found"));
}

} // namespace

KeyedUnarchiver::KeyedUnarchiver(const QCborMap& map)
    : _map(map)
{
}

bool KeyedUnarchiver::contains(const QString& key) const
{
    return _map.contains(key);
}

std::optional<QString> KeyedUnarchiver::decodeString(const QString& key) const
{
    const std::optional<QCborValue> value = _value(key);
    if (!value) {
        return std::nullopt;
    }
    if (!value->isString()) {
        throwWrongKind(key, QStringLiteral("text"), kindOf(*value));
    }
    return value->toString();
}

std::optional<QStringList> KeyedUnarchiver::decodeStringList(const QString& key) const
{
    const std::optional<QCborArray> array = _decodeArray(key);
    if (!array) {
        return std::nullopt;
    }
    QStringList texts;
    texts.reserve(array->size());
    for (const auto& element : *array) {
        if (!element.isString()) {
            throwWrongKind(key, QStringLiteral("list of texts"), QStringLiteral("list with ") + kindOf(element));
        }
        texts.append(element.toString());
    }
    return texts;
}

std::optional<QColor> KeyedUnarchiver::decodeColor(const QString& key) const
{
    const std::optional<QCborValue> value = _value(key);
    if (!value) {
        return std::nullopt;
    }
    std::array<quint16, 4> channels = {};
    const QCborArray array = value->toArray();
    bool isColor = array.size() == qsizetype(channels.size());
    for (qsizetype index = 0; isColor && index < array.size(); ++index) {
        const QCborValue element = array.at(index);
        const qint64 channel = element.toInteger(-1);
        isColor = element.isInteger() && channel >= 0 && channel <= std::numeric_limits<quint16>::max();
        channels[size_t(index)] = quint16(channel);
    }
    if (!isColor) {
        throwWrongKind(key, QStringLiteral("colour"), kindOf(*value));
    }
    return QColor::fromRgba64(channels[0], channels[1], channels[2], channels[3]);
}

bool KeyedUnarchiver::decodeBool(const QString& key) const
{
    const std::optional<QCborValue> value = _value(key);
    if (value && !value->isBool()) {
        throwWrongKind(key, QStringLiteral("boolean"), kindOf(*value));
    }
    return value && value->toBool();
}

std::optional<qint64> KeyedUnarchiver::decodeInteger(const QString& key) const
{
    const std::optional<QCborValue> value = _value(key);
    if (!value) {
        return std::nullopt;
    }
    if (!value->isInteger()) {
        throwWrongKind(key, QStringLiteral("integer"), kindOf(*value));
    }
    return value->toInteger();
}

std::optional<double> KeyedUnarchiver::decodeDouble(const QString& key) const
{
    const std::optional<QCborValue> value = _value(key);
    if (!value) {
        return std::nullopt;
    }
    if (!value->isDouble()) {
        throwWrongKind(key, QStringLiteral("double"), kindOf(*value));
    }
    return value->toDouble();
}

std::optional<QCborValue> KeyedUnarchiver::_value(const QString& key) const
{
    const auto found = _map.find(key);
    return found != _map.end() ? std::optional<QCborValue>(found.value()) : std::nullopt;
}

std::optional<QCborMap> KeyedUnarchiver::_decodeMap(const QString& key) const
{
    const std::optional<QCborValue> value = _value(key);
    if (!value) {
        return std::nullopt;
    }
    if (!value->isMap()) {
        throwWrongKind(key, QStringLiteral("object"), kindOf(*value));
    }
    return value->toMap();
}

std::optional<QCborArray> KeyedUnarchiver::_decodeArray(const QString& key) const
{
    const std::optional<QCborValue> value = _value(key);
    if (!value) {
        return std::nullopt;
    }
    if (!value->isArray()) {
        throwWrongKind(key, QStringLiteral("list"), kindOf(*value));
    }
    return value->toArray();
}

QCborMap KeyedUnarchiver::_elementMap(const QString& key, const QCborArray& array, qsizetype index)
{
    const QCborValue element = array.at(index);
    if (!element.isMap()) {
        throwWrongKind(key, QStringLiteral("list of objects"), QStringLiteral("list with ") + kindOf(element));
    }
    return element.toMap();
}

QCborMap KeyedUnarchiver::_rootMap(const QByteArray& bytes)
{
    const QCborValue root = KeyedArchiveFormat::rootOfArchive(bytes);
    if (!root.isMap()) {
        throwUnarchiveException(QStringLiteral("root: object wanted, %1 found").arg(kindOf(root)));
    }
    return root.toMap();
}

QCborArray KeyedUnarchiver::_rootArray(const QByteArray& bytes)
{
    const QCborValue root = KeyedArchiveFormat::rootOfArchive(bytes);
    if (!root.isArray()) {
        throwUnarchiveException(QStringLiteral("root: list wanted, %1 found").arg(kindOf(root)));
    }
    return root.toArray();
}

std::optional<QByteArray> KeyedUnarchiver::_bytesOfFile(const QString& path)
{
    const auto fail = [&path](const QString& what) {
        throwUnarchiveException(path + QStringLiteral(": ") + what);
    };

    const QFileInfo info(path);
    if (!info.exists()) {
        return std::nullopt;
    }
    // Anything else may have no end, or block.
    if (!info.isFile()) {
        fail(QStringLiteral("no regular file"));
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        // It may have gone in the meantime.
        if (!file.exists()) {
            return std::nullopt;
        }
        fail(file.errorString());
    }
    if (file.size() > KeyedArchiveFormat::kMaximumBytes) {
        fail(QStringLiteral("too large: %1 bytes").arg(file.size()));
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        fail(file.errorString());
    }
    return bytes;
}

} // namespace kovalin::platform
