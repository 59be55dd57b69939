#pragma once

#include "platform/ui/CollectionView.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtGui/QAccessible>

namespace kovalin::platform {

/// A view that may end; while it ends it is no collection view any more.
class CollectionViewPointer final {
public:
    explicit CollectionViewPointer(CollectionView& view)
        : _item(&view)
    {
    }

    [[nodiscard]] CollectionView* view() const { return qobject_cast<CollectionView*>(_item.data()); }

private:
    const QPointer<QQuickItem> _item;
};

/// A collection view as assistive tools see it: a list whose children are all items of the data source. Main thread only.
/// Qt holds it until the view ends.
class CollectionInterface final : public QAccessibleInterface {
public:
    explicit CollectionInterface(CollectionView& view);
    ~CollectionInterface() override;

    /// The items that somebody has the name of, and that are called otherwise now.
    [[nodiscard]] QList<QAccessibleInterface*> childrenWithOutdatedNames() const;

    [[nodiscard]] bool isValid() const override;
    [[nodiscard]] QObject* object() const override;
    [[nodiscard]] QWindow* window() const override;
    [[nodiscard]] QAccessibleInterface* focusChild() const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface* parent() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text kind, const QString& text) override;
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QAccessible::State state() const override;

private:
    [[nodiscard]] CollectionView* view() const { return _view.view(); }

    const CollectionViewPointer _view;
    /// Of children that were asked for, by index. They stay until the list ends, since somebody may hold them; those that
    /// the list is too short for aren't valid.
    mutable QHash<int, QAccessible::Id> _children;
};

/// An item of a collection view, which may have no cell. Main thread only. Ends with the list's interface.
class CollectionItemInterface final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    CollectionItemInterface(CollectionView& view, int item);

    [[nodiscard]] int item() const { return _item; }
    [[nodiscard]] bool isOf(const CollectionView* list) const { return view() == list; }
    /// The name was told, and is another one now.
    [[nodiscard]] bool hasOutdatedName() const;

    [[nodiscard]] bool isValid() const override;
    [[nodiscard]] QObject* object() const override;
    [[nodiscard]] QWindow* window() const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface* parent() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text kind, const QString& text) override;
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] void* interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& actionName) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString& actionName) const override;

private:
    [[nodiscard]] CollectionView* view() const { return _view.view(); }

    const CollectionViewPointer _view;
    const int _item;
    mutable QString _toldName;
};

} // namespace kovalin::platform
