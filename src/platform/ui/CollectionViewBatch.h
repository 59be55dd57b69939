#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

#include <vector>

namespace kovalin::platform {

/// Which item of a list became which, by a batch of changes.
struct CollectionViewMapping {
    /// Stands for no item.
    static constexpr qsizetype none = -1;

    /// By the former place; none for an item that goes.
    std::vector<qsizetype> newItems;
    /// By the new place; none for an item that comes.
    std::vector<qsizetype> formerItems;

    /// Nothing changes.
    [[nodiscard]] static CollectionViewMapping identity(qsizetype count);
};

/// Changes of a list, as a collection view is told them: places that go count before all changes, places that come after all.
class CollectionViewBatch final {
public:
    void insert(const QList<qsizetype>& items) { _inserted += items; }
    void remove(const QList<qsizetype>& items) { _deleted += items; }
    void move(qsizetype from, qsizetype to);
    /// Places before all changes.
    void reload(const QList<qsizetype>& items) { _reloaded += items; }

    [[nodiscard]] const QList<qsizetype>& reloadedItems() const { return _reloaded; }

    /// What leads from a list of `formerCount` items to one of `newCount`. False if these changes don't; then `fault` says why.
    [[nodiscard]] bool map(qsizetype formerCount, qsizetype newCount, CollectionViewMapping& mapping,
                           QString& fault) const;

private:
    struct Move {
        qsizetype from;
        qsizetype to;
    };

    QList<qsizetype> _inserted;
    QList<qsizetype> _deleted;
    QList<qsizetype> _reloaded;
    std::vector<Move> _moves;
};

} // namespace kovalin::platform
