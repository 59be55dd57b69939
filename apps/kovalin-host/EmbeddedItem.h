#pragma once

#include <QtCore/QPointer>
#include <QtCore/QSizeF>
#include <QtQuick/QQuickItem>

#include <optional>

namespace kovalin::host {

/// A place in a QML scene for an item that C++ has, which fills it: the picker, the icon. Main thread. The item belongs to
/// somebody else, and may go at any time.
class EmbeddedItem : public QQuickItem {
    Q_OBJECT

public:
    explicit EmbeddedItem(QQuickItem* parent = nullptr);

    /// Takes the place of the former one; null for none.
    void setContent(QQuickItem* content);
    /// What the item lies in cuts it off to this size, which leaves the item's own as it is. Absent: to all of it.
    void cutTo(const std::optional<QSizeF>& size);
    /// Hides what the item lies in, and not the item itself.
    void setFrameHidden(bool isHidden);

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    void layOut();

    QQuickItem* const _frame;
    QPointer<QQuickItem> _content;
    std::optional<QSizeF> _cut;
};

} // namespace kovalin::host
