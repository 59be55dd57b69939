#pragma once

#include "platform/ui/CollectionView.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QString>

#include <functional>
#include <memory>

namespace kovalin::test {

/// A cell that shows a number in a colour of its own.
class NumberCell final : public platform::CollectionViewCell {
public:
    void setHighlighted(bool isHighlighted) override
    {
        CollectionViewCell::setHighlighted(isHighlighted);
        ++highlightChanges;
    }
    void prepareForReuse() override { ++reuses; }

    int number = -1;
    int reuses = 0;
    int highlightChanges = 0;
};

/// Data source and delegate of a collection view that shows a list of numbers.
class ListSource final : public platform::CollectionViewDataSource, public platform::CollectionViewDelegate {
public:
    [[nodiscard]] static QColor colorOf(int number)
    {
        return QColor(QColor::fromHsv(number * 47 % 360, 255, 200).rgb());
    }

    [[nodiscard]] qsizetype collectionViewNumberOfItemsInSection(platform::CollectionView&) override
    {
        return numbers.size();
    }
    [[nodiscard]] std::shared_ptr<platform::CollectionViewCell>
    collectionViewCellForItemAtIndexPath(platform::CollectionView& view, qsizetype item) override
    {
        asked.append(item);
        const auto cell =
            std::dynamic_pointer_cast<NumberCell>(view.dequeueReusableCell(QStringLiteral("number"), item));
        if (cell && item < numbers.size()) {
            cell->number = numbers.at(item);
            cell->setBackgroundColor(colorOf(cell->number));
        }
        return cell;
    }
    [[nodiscard]] QString collectionViewAccessibilityLabelForItemAtIndexPath(platform::CollectionView&,
                                                                             qsizetype item) override
    {
        return QStringLiteral("number %1").arg(numbers.value(item, -1));
    }
    [[nodiscard]] QSizeF collectionViewLayoutSizeForItemAtIndexPath(platform::CollectionView&, qsizetype item) override
    {
        return sizes.value(item, size);
    }
    void collectionViewDidSelectItemAtIndexPath(platform::CollectionView& view, qsizetype item) override
    {
        selected.append(item);
        if (onSelect) {
            onSelect(view);
        }
    }
    void scrollViewDidScroll(platform::ScrollView&) override { ++scrolls; }

    QList<int> numbers;
    QSizeF size{50, 50};
    QMap<qsizetype, QSizeF> sizes; ///< Where they differ.
    QList<qsizetype> asked;
    QList<qsizetype> selected;
    int scrolls = 0;
    std::function<void(platform::CollectionView&)> onSelect;
};

} // namespace kovalin::test
