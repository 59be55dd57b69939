#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QCborArray>
#include <QtCore/QCborMap>
#include <QtCore/QCborValue>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtGui/QColor>

#include <concepts>
#include <memory>
#include <optional>

namespace kovalin::platform {

class KeyedArchiver;

/// A record that can write itself: it has `void encodeWithCoder(KeyedArchiver& coder) const`.
template <class T>
concept Encodable = requires(const T& object, KeyedArchiver& coder)
{
    object.encodeWithCoder(coder);
};

/// Writes records under keys, for KeyedUnarchiver to read. The format is told in KeyedArchiveFormat.h.
///
/// archivedData() and archiveRootObject() may be called on any thread. They make an archiver for each record and hand
/// it to the record's encodeWithCoder(), on the same thread and for the length of that call.
///
/// Keys are the program's own words, of ASCII characters. They keep the order in which they are written. A second value
/// under the same key takes the place of the first.
class KeyedArchiver final {
public:
    KeyedArchiver(const KeyedArchiver&) = delete;
    KeyedArchiver& operator=(const KeyedArchiver&) = delete;

    // Making archives. A root is an Encodable, or a QList of Encodables or of std::shared_ptr to them. Each of these
    // throws PlatformException, "KeyedArchiveException", when objects lie in each other deeper than the format allows,
    // as they do when one holds itself.

    /// The bytes of an archive of `root`. Throws the same when it is beyond the format's limits.
    template <class Root>
    [[nodiscard]] static QByteArray archivedData(const Root& root)
    {
        return _bytes(_coded(root, 1));
    }

    /// Writes an archive of `root` into the file `path`, whole or not at all. Makes no folders. False when it can't be
    /// written or is beyond the format's limits; what was there before is then untouched.
    template <class Root>
    [[nodiscard]] static bool archiveRootObject(const Root& root, const QString& path)
    {
        return _write(_coded(root, 1), path);
    }

    // Writing one record.

    /// A surrogate without its partner becomes "?".
    void encodeObject(const QString& key, const QString& text);
    void encodeObject(const QString& key, const QStringList& texts);

    /// Red, green, blue and alpha, 16 bits each; the colour model isn't kept. An invalid colour counts as absent. A
    /// template so that no text or number turns into a colour unasked.
    template <std::same_as<QColor> Color>
    void encodeObject(const QString& key, const Color& color)
    {
        _encodeColor(key, color);
    }

    template <Encodable T>
    void encodeObject(const QString& key, const T& object)
    {
        _map.insert(key, _coded(object, _depth + 1));
    }

    /// Null writes nothing.
    template <Encodable T>
    void encodeObject(const QString& key, const std::shared_ptr<T>& object)
    {
        if (object) {
            encodeObject(key, *object);
        }
    }

    template <Encodable T>
    void encodeObject(const QString& key, const QList<T>& objects)
    {
        _map.insert(key, _coded(objects, _depth + 1));
    }

    /// Nulls in the list are left out.
    template <Encodable T>
    void encodeObject(const QString& key, const QList<std::shared_ptr<T>>& objects)
    {
        _map.insert(key, _coded(objects, _depth + 1));
    }

    /// Any of the above; std::nullopt writes nothing.
    template <class T>
    void encodeObject(const QString& key, const std::optional<T>& object)
    {
        if (object) {
            encodeObject(key, *object);
        }
    }

    void encodeBool(const QString& key, bool value);
    void encodeInteger(const QString& key, qint64 value);
    void encodeDouble(const QString& key, double value);

private:
    explicit KeyedArchiver(int depth);

    template <Encodable T>
    static QCborValue _coded(const T& object, int depth)
    {
        KeyedArchiver archiver(depth);
        object.encodeWithCoder(archiver);
        return archiver._map;
    }

    template <Encodable T>
    static QCborValue _coded(const QList<T>& objects, int depth)
    {
        QCborArray array;
        for (const T& object : objects) {
            array.append(_coded(object, depth));
        }
        return array;
    }

    template <Encodable T>
    static QCborValue _coded(const QList<std::shared_ptr<T>>& objects, int depth)
    {
        QCborArray array;
        for (const std::shared_ptr<T>& object : objects) {
            if (object) {
                array.append(_coded(*object, depth));
            }
        }
        return array;
    }

    void _encodeColor(const QString& key, const QColor& color);

    static QByteArray _bytes(const QCborValue& root);
    static bool _write(const QCborValue& root, const QString& path);

    QCborMap _map;
    int _depth;
};

} // namespace kovalin::platform
