#include "platform/ui/CollectionViewCells.h"

#include <algorithm>
#include <utility>

namespace kovalin::platform {

namespace {

/// Below those that stay.
constexpr double zOfLeaving = -1;

} // namespace

void CollectionViewCells::registerCell(const QString& reuseIdentifier, NewCell newCell)
{
    _newCells[reuseIdentifier] = std::move(newCell);
    for (const Cell& cell : std::exchange(_free[reuseIdentifier], {})) {
        cell->removeFromSuperview();
    }
}

CollectionViewCells::Cell CollectionViewCells::take(const QString& reuseIdentifier, qsizetype item,
                                                    const std::weak_ptr<CollectionView>& collectionView)
{
    auto& free = _free[reuseIdentifier];
    if (!free.empty()) {
        auto chosen = std::prev(free.end());
        if (const auto former = _formerCells.find(item); former != _formerCells.end()) {
            const auto same = std::find(free.begin(), free.end(), former->second.lock());
            chosen = same == free.end() ? chosen : same;
        }
        Cell cell = std::move(*chosen);
        free.erase(chosen);
        return cell;
    }
    const auto newCell = _newCells.find(reuseIdentifier);
    if (newCell == _newCells.end()) {
        return nullptr;
    }
    Cell cell = newCell->second();
    if (cell) {
        cell->belongTo(collectionView, reuseIdentifier);
    }
    return cell;
}

CollectionViewCells::Cell CollectionViewCells::cellOfItem(qsizetype item) const
{
    const auto found = _byItem.find(item);
    return found == _byItem.end() ? nullptr : found->second;
}

qsizetype CollectionViewCells::itemOfCell(const CollectionViewCell& cell) const
{
    const auto found =
        std::find_if(_byItem.begin(), _byItem.end(), [&](const auto& entry) { return entry.second.get() == &cell; });
    return found == _byItem.end() ? -1 : found->first;
}

void CollectionViewCells::setCellOfItem(qsizetype item, const Cell& cell)
{
    _byItem[item] = cell;
}

void CollectionViewCells::free(qsizetype item)
{
    const auto found = _byItem.find(item);
    if (found != _byItem.end()) {
        const Cell cell = found->second;
        _byItem.erase(found);
        _formerCells[item] = cell;
        putAside(cell);
    }
}

void CollectionViewCells::freeAll()
{
    while (!_byItem.empty()) {
        free(_byItem.begin()->first);
    }
}

void CollectionViewCells::beginToLeave(const Cell& cell)
{
    cell->cancelPress();
    cell->setEnabled(false);
    cell->setZPosition(zOfLeaving);
    _leaving.push_back(cell);
}

void CollectionViewCells::endToLeave(const Cell& cell)
{
    const auto found = std::find(_leaving.begin(), _leaving.end(), cell);
    if (found != _leaving.end()) {
        _leaving.erase(found);
        putAside(cell);
    }
}

void CollectionViewCells::putAside(const Cell& cell)
{
    cell->cancelPress();
    cell->setHidden(true);
    cell->setEnabled(true);
    cell->setZPosition(0);
    cell->prepareForReuse();
    if (cell->reuseIdentifier().isEmpty()) {
        cell->removeFromSuperview();
        return;
    }
    _free[cell->reuseIdentifier()].push_back(cell);
}

} // namespace kovalin::platform
