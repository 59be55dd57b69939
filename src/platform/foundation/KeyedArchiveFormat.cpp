#include "platform/foundation/KeyedArchiveFormat.h"

#include "platform/foundation/PlatformException.h"

#include <QtCore/QByteArrayView>
#include <QtCore/QCborMap>
#include <QtCore/QCborStreamReader>
#include <QtCore/QCryptographicHash>
#include <QtCore/QSet>
#include <QtCore/QString>

#include <limits>

namespace kovalin::platform::KeyedArchiveFormat {

namespace {

constexpr qint64 kVersion = 1;

// The envelope, a root list, for each object a list and a map, and in the innermost object a list of texts or a colour.
constexpr int kMaximumNesting = 2 * kMaximumObjectDepth + 2;

QString formatKey()
{
    return QStringLiteral("format");
}

QString versionKey()
{
    return QStringLiteral("version");
}

QString checksumKey()
{
    return QStringLiteral("checksum");
}

QString rootKey()
{
    return QStringLiteral("root");
}

QString formatName()
{
    return QStringLiteral("kovalin.keyed-archive");
}

// Against damage, not against forgery: a changed letter or digit makes a record that is as good as any other.
QString checksumOf(QByteArrayView rootBytes)
{
    QCryptographicHash hash(QCryptographicHash::Blake2s_128);
    hash.addData(rootBytes);
    return QString::fromLatin1(hash.result().toHex());
}

// Walks over the bytes without building anything, so that only what is known to be sound is built afterwards.
class Checker {
public:
    explicit Checker(const QByteArray& bytes)
        : _reader(bytes)
        , _size(bytes.size())
        , _bytes(bytes)
    {
    }

    /// After the check: the bytes of the entry "root" of the outermost map; empty without one.
    [[nodiscard]] QByteArrayView rootBytes() const { return _rootBytes; }

    /// Throws unless the bytes are one CBOR map, whole, within the limits and made of known kinds only.
    void checkArchive()
    {
        if (_size > kMaximumBytes) {
            throwUnarchiveException(QStringLiteral("too large: %1 bytes").arg(_size));
        }
        if (!_reader.isMap()) {
            _fail(QStringLiteral("no archive"));
        }
        _checkItem(1);
        if (_reader.currentOffset() != _size) {
            _fail(QStringLiteral("more data behind the end"));
        }
    }

private:
    void _checkItem(int nesting)
    {
        _throwOnError();
        if (++_valueCount > kMaximumValues) {
            _fail(QStringLiteral("too many values"));
        }
        switch (_reader.type()) {
        case QCborStreamReader::UnsignedInteger:
            if (_reader.toUnsignedInteger() > quint64(std::numeric_limits<qint64>::max())) {
                _fail(QStringLiteral("integer out of range"));
            }
            _next();
            return;
        case QCborStreamReader::NegativeInteger: {
            // The amount below zero; 0 stands for 2^64.
            const auto amount = quint64(_reader.toNegativeInteger());
            if (amount == 0 || amount - 1 > quint64(std::numeric_limits<qint64>::max())) {
                _fail(QStringLiteral("integer out of range"));
            }
            _next();
            return;
        }
        case QCborStreamReader::SimpleType:
            if (!_reader.isBool()) {
                _fail(QStringLiteral("unknown kind of value"));
            }
            _next();
            return;
        case QCborStreamReader::Double:
            _next();
            return;
        case QCborStreamReader::String:
            (void)_takeText();
            return;
        case QCborStreamReader::Array:
        case QCborStreamReader::Map:
            _checkContainer(nesting);
            return;
        default:
            _fail(QStringLiteral("unknown kind of value"));
        }
    }

    void _checkContainer(int nesting)
    {
        if (nesting > kMaximumNesting) {
            _fail(QStringLiteral("nested too deeply"));
        }
        if (!_reader.isLengthKnown()) {
            _fail(QStringLiteral("length left open"));
        }
        const bool isMap = _reader.isMap();
        QSet<QString> keys;
        if (!_reader.enterContainer()) {
            _fail(_reader.lastError().toString());
        }
        while (_reader.hasNext()) {
            const bool isRoot = isMap && _takeKey(keys) == rootKey() && nesting == 1;
            const qint64 begin = _reader.currentOffset();
            _checkItem(nesting + 1);
            if (isRoot) {
                _rootBytes = QByteArrayView(_bytes).sliced(begin, _reader.currentOffset() - begin);
            }
        }
        _throwOnError();
        if (!_reader.leaveContainer()) {
            _fail(_reader.lastError().toString());
        }
        _throwOnError();
    }

    QString _takeKey(QSet<QString>& keys)
    {
        if (!_reader.isString()) {
            _fail(QStringLiteral("key that is no text"));
        }
        const QString key = _takeText();
        if (keys.contains(key)) {
            _fail(QStringLiteral("key \"%1\" twice").arg(key));
        }
        keys.insert(key);
        return key;
    }

    QString _takeText()
    {
        if (!_reader.isLengthKnown()) {
            _fail(QStringLiteral("length left open"));
        }
        // Before reading, since the reader makes room for the declared length first.
        const qsizetype length = _reader.currentStringChunkSize();
        if (length < 0 || length > _size - _reader.currentOffset()) {
            _fail(QStringLiteral("cut off"));
        }
        const auto text = _reader.readString();
        if (text.status != QCborStreamReader::Ok || _reader.readString().status != QCborStreamReader::EndOfString) {
            _fail(_reader.lastError().toString());
        }
        return text.data;
    }

    void _next()
    {
        if (!_reader.next()) {
            _fail(_reader.lastError().toString());
        }
    }

    void _throwOnError()
    {
        if (_reader.lastError() != QCborError::NoError) {
            _fail(_reader.lastError().toString());
        }
    }

    [[noreturn]] void _fail(const QString& what) const
    {
        throwUnarchiveException(QStringLiteral("damaged archive: at byte %1: ").arg(_reader.currentOffset()) + what);
    }

    QCborStreamReader _reader;
    qsizetype _size;
    const QByteArray _bytes;
    QByteArrayView _rootBytes;
    qint64 _valueCount = 0;
};

} // namespace

std::optional<QByteArray> bytesOfArchive(const QCborValue& root)
{
    QCborMap envelope;
    envelope.insert(formatKey(), formatName());
    envelope.insert(versionKey(), kVersion);
    envelope.insert(checksumKey(), checksumOf(QCborValue(root).toCbor()));
    envelope.insert(rootKey(), root);
    QByteArray bytes = QCborValue(envelope).toCbor();
    try {
        Checker(bytes).checkArchive();
    } catch (const PlatformException&) {
        return std::nullopt;
    }
    return bytes;
}

QCborValue rootOfArchive(const QByteArray& bytes)
{
    Checker checker(bytes);
    checker.checkArchive();
    const QCborMap envelope = QCborValue::fromCbor(bytes).toMap();
    if (envelope.value(formatKey()) != QCborValue(formatName())) {
        throwUnarchiveException(QStringLiteral("no archive: its format isn't ") + formatName());
    }
    const QCborValue version = envelope.value(versionKey());
    if (version != QCborValue(kVersion)) {
        throwUnarchiveException(QStringLiteral("version %1 wanted, ").arg(kVersion) +
                                (version.isInteger() ? QString::number(version.toInteger()) : kindOf(version)) +
                                QStringLiteral(" found"));
    }
    QCborValue root = envelope.value(rootKey());
    if (!root.isMap() && !root.isArray()) {
        throwUnarchiveException(QStringLiteral("root: object or list wanted, %1 found").arg(kindOf(root)));
    }
    if (envelope.value(checksumKey()) != QCborValue(checksumOf(checker.rootBytes()))) {
        throwUnarchiveException(QStringLiteral("damaged archive: its checksum isn't that of its root"));
    }
    return root;
}

void throwUnarchiveException(const QString& reason)
{
    throw PlatformException(QStringLiteral("KeyedUnarchiveException"), reason);
}

QString kindOf(const QCborValue& value)
{
    switch (value.type()) {
    case QCborValue::Map:
        return QStringLiteral("object");
    case QCborValue::Array:
        return QStringLiteral("list");
    case QCborValue::String:
        return QStringLiteral("text");
    case QCborValue::Integer:
        return QStringLiteral("integer");
    case QCborValue::Double:
        return QStringLiteral("double");
    case QCborValue::True:
    case QCborValue::False:
        return QStringLiteral("boolean");
    case QCborValue::Undefined:
        return QStringLiteral("nothing");
    default:
        return QStringLiteral("unknown kind");
    }
}

} // namespace kovalin::platform::KeyedArchiveFormat
