#pragma once

#include "support/ListSource.h"
#include "support/ManualAnimationDriver.h"
#include "support/ViewTest.h"

#include <algorithm>
#include <numeric>

namespace kovalin::test {

/// A collection view of a list of numbers, 200 × 200 points, in rows of four of 50 × 50.
class CollectionViewTest : public ViewTest {
protected:
    explicit CollectionViewTest(const std::shared_ptr<platform::CollectionViewFlowLayout>& layout =
                                    std::make_shared<platform::CollectionViewFlowLayout>())
        : view(platform::makeView<platform::CollectionView>(layout))
    {
        layout->setMinimumInteritemSpacing(0);
        layout->setMinimumLineSpacing(0);
        view->setFrame({0, 0, side, side});
        view->registerCell(QStringLiteral("number"), [this] {
            ++made;
            return platform::makeView<NumberCell>();
        });
        view->setDataSource(source);
        view->setDelegate(source);
    }

    void fill(qsizetype count)
    {
        source->numbers.resize(count);
        std::iota(source->numbers.begin(), source->numbers.end(), 0);
        view->reloadData();
        root()->addSubview(view);
        grab();
    }

    [[nodiscard]] std::shared_ptr<NumberCell> cell(qsizetype item) const
    {
        return std::dynamic_pointer_cast<NumberCell>(view->cellForItemAtIndexPath(item));
    }
    [[nodiscard]] QList<qsizetype> itemsWithCells() const
    {
        QList<qsizetype> items;
        for (qsizetype item = 0; item < view->numberOfItems(); ++item) {
            if (view->cellForItemAtIndexPath(item)) {
                items.append(item);
            }
        }
        return items;
    }
    [[nodiscard]] static QList<qsizetype> range(qsizetype first, qsizetype end)
    {
        QList<qsizetype> items(std::max<qsizetype>(end - first, 0));
        std::iota(items.begin(), items.end(), first);
        return items;
    }
    /// All cells that there are, of items or not.
    [[nodiscard]] qsizetype allCells() const
    {
        const auto views = view->contentView()->subviews();
        return std::ranges::count_if(
            views, [](const auto& each) { return std::dynamic_pointer_cast<NumberCell>(each) != nullptr; });
    }

    ManualAnimationDriver driver;
    std::shared_ptr<ListSource> source = std::make_shared<ListSource>();
    int made = 0;
    std::shared_ptr<platform::CollectionView> view;
};

} // namespace kovalin::test
