#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtGui/QColor>

#include <cstddef>
#include <memory>

/// What a pill shows: a tag and the pill's colour. Never changes; any thread.
class QXSDKTagTile final {
public:
    QXSDKTagTile(const QString& text, const QColor& color);

    /// The tag as its list has it: what a tap searches for.
    [[nodiscard]] const QString& text() const { return _text; }
    [[nodiscard]] const QColor& color() const { return _color; }

    /// Whether both have an equal text and show the same colour.
    [[nodiscard]] bool isEqual(const QXSDKTagTile& other) const;

    /// Equal for equal tiles, within one process.
    [[nodiscard]] std::size_t hash() const;

    /// A new tile with the same values.
    [[nodiscard]] std::shared_ptr<QXSDKTagTile> copy() const;

private:
    QString _text;
    QColor _color;
};

/// A shared tile; never null in a list.
using QXSDKTagTilePtr = std::shared_ptr<const QXSDKTagTile>;
using QXSDKTagTileList = QList<QXSDKTagTilePtr>;
