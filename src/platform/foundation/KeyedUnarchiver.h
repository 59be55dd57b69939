#pragma once

#include "platform/foundation/PlatformException.h"

#include <QtCore/QByteArray>
#include <QtCore/QCborArray>
#include <QtCore/QCborMap>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtGui/QColor>

#include <concepts>
#include <memory>
#include <optional>

namespace kovalin::platform {

class KeyedUnarchiver;

/// A record that can read itself: it has a constructor `explicit T(const KeyedUnarchiver& coder)`.
template <class T>
concept Decodable = std::constructible_from<T, const KeyedUnarchiver&>;

/// Reads what KeyedArchiver wrote.
///
/// The static operations may be called on any thread. They make an unarchiver for each record and hand it to the
/// record's constructor, on the same thread and for the length of that call.
///
/// A missing key is absence. A key whose value is of another kind than asked for is damage: PlatformException,
/// "KeyedUnarchiveException", whose reason names the key, the kind wanted and the kind found.
class KeyedUnarchiver final {
public:
    KeyedUnarchiver(const KeyedUnarchiver&) = delete;
    KeyedUnarchiver& operator=(const KeyedUnarchiver&) = delete;

    // Reading archives. An archive that is damaged, cut off, too large, of another version or followed by more data, a
    // root of the other form (object or list), and a record with a value of another kind raise a PlatformException;
    // hostile bytes do no more harm than that.

    /// The root object of an archive's bytes, never null.
    template <Decodable T>
    [[nodiscard]] static std::shared_ptr<T> unarchiveObjectWithData(const QByteArray& bytes)
    {
        return _object<T>(_rootMap(bytes));
    }

    /// The root list of an archive's bytes.
    template <Decodable T>
    [[nodiscard]] static QList<std::shared_ptr<T>> unarchiveObjectsWithData(const QByteArray& bytes)
    {
        return _objects<T>(QString(), _rootArray(bytes));
    }

    /// The root object of an archive file; null when there is no file. The reason of an exception, also of one from a
    /// record's constructor, begins with the path. A file that can't be read, or a folder in its place, raises one too.
    template <Decodable T>
    [[nodiscard]] static std::shared_ptr<T> unarchiveObjectWithFile(const QString& path)
    {
        const std::optional<QByteArray> bytes = _bytesOfFile(path);
        if (!bytes) {
            return nullptr;
        }
        return _namingFile(path, [&] { return unarchiveObjectWithData<T>(*bytes); });
    }

    /// The root list of an archive file; std::nullopt when there is no file. Exceptions as above.
    template <Decodable T>
    [[nodiscard]] static std::optional<QList<std::shared_ptr<T>>> unarchiveObjectsWithFile(const QString& path)
    {
        const std::optional<QByteArray> bytes = _bytesOfFile(path);
        if (!bytes) {
            return std::nullopt;
        }
        return _namingFile(path, [&] { return unarchiveObjectsWithData<T>(*bytes); });
    }

    // Reading one record.

    [[nodiscard]] bool contains(const QString& key) const;

    [[nodiscard]] std::optional<QString> decodeString(const QString& key) const;
    [[nodiscard]] std::optional<QStringList> decodeStringList(const QString& key) const;
    [[nodiscard]] std::optional<QColor> decodeColor(const QString& key) const;

    /// Null when absent.
    template <Decodable T>
    [[nodiscard]] std::shared_ptr<T> decodeObject(const QString& key) const
    {
        const std::optional<QCborMap> map = _decodeMap(key);
        return map ? _object<T>(*map) : nullptr;
    }

    template <Decodable T>
    [[nodiscard]] std::optional<QList<std::shared_ptr<T>>> decodeObjects(const QString& key) const
    {
        const std::optional<QCborArray> array = _decodeArray(key);
        return array ? std::optional(_objects<T>(key, *array)) : std::nullopt;
    }

    /// False when absent.
    [[nodiscard]] bool decodeBool(const QString& key) const;
    [[nodiscard]] std::optional<qint64> decodeInteger(const QString& key) const;
    [[nodiscard]] std::optional<double> decodeDouble(const QString& key) const;

private:
    explicit KeyedUnarchiver(const QCborMap& map);

    template <class T>
    static std::shared_ptr<T> _object(const QCborMap& map)
    {
        const KeyedUnarchiver unarchiver(map);
        return std::make_shared<T>(unarchiver);
    }

    template <class T>
    static QList<std::shared_ptr<T>> _objects(const QString& key, const QCborArray& array)
    {
        QList<std::shared_ptr<T>> objects;
        objects.reserve(array.size());
        for (qsizetype index = 0; index < array.size(); ++index) {
            objects.append(_object<T>(_elementMap(key, array, index)));
        }
        return objects;
    }

    template <class Read>
    static auto _namingFile(const QString& path, Read&& read)
    {
        try {
            return read();
        } catch (const PlatformException& exception) {
            throw PlatformException(exception.name(), path + QStringLiteral(": ") + exception.reason());
        }
    }

    static QCborMap _rootMap(const QByteArray& bytes);
    static QCborArray _rootArray(const QByteArray& bytes);
    static std::optional<QByteArray> _bytesOfFile(const QString& path);
    static QCborMap _elementMap(const QString& key, const QCborArray& array, qsizetype index);

    [[nodiscard]] std::optional<QCborValue> _value(const QString& key) const;
    [[nodiscard]] std::optional<QCborMap> _decodeMap(const QString& key) const;
    [[nodiscard]] std::optional<QCborArray> _decodeArray(const QString& key) const;

    QCborMap _map;
};

} // namespace kovalin::platform
