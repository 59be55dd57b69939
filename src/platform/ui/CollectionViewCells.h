#pragma once

#include "platform/ui/CollectionViewCell.h"

#include <QtCore/QString>

#include <functional>
#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

namespace kovalin::platform {

/// The cells of a collection view: those that show items, those on their way out, and those that wait to be used again, which
/// are hidden and stay where they are. Main thread only.
class CollectionViewCells final {
public:
    using Cell = std::shared_ptr<CollectionViewCell>;
    using NewCell = std::function<Cell()>;
    using ByItem = std::map<qsizetype, Cell>;

    void registerCell(const QString& reuseIdentifier, NewCell newCell);

    /// One that is free, preferably the one that was freed from the item; else a new one. Null for an unknown identifier.
    [[nodiscard]] Cell take(const QString& reuseIdentifier, qsizetype item,
                            const std::weak_ptr<CollectionView>& collectionView);

    [[nodiscard]] const ByItem& byItem() const { return _byItem; }
    [[nodiscard]] Cell cellOfItem(qsizetype item) const;
    [[nodiscard]] qsizetype itemOfCell(const CollectionViewCell& cell) const;
    void setCellOfItem(qsizetype item, const Cell& cell);
    /// They show these items from now on.
    void replaceAll(ByItem byItem) { _byItem = std::move(byItem); }

    /// The item's cell is free.
    void free(qsizetype item);
    /// All are.
    void freeAll();
    /// What was freed until now is given to any item.
    void forgetFormerItems() { _formerCells.clear(); }

    /// The cell leaves the screen in an animation, and is free when that has ended.
    void beginToLeave(const Cell& cell);
    void endToLeave(const Cell& cell);

private:
    void putAside(const Cell& cell);

    std::map<QString, NewCell> _newCells;
    ByItem _byItem;
    std::vector<Cell> _leaving;
    std::map<QString, std::vector<Cell>> _free;
    std::unordered_map<qsizetype, std::weak_ptr<CollectionViewCell>> _formerCells;
};

} // namespace kovalin::platform
