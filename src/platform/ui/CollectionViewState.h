#pragma once

#include "platform/ui/CollectionView.h"
#include "platform/ui/CollectionViewBatch.h"
#include "platform/ui/CollectionViewCells.h"

#include <memory>
#include <optional>
#include <vector>

namespace kovalin::platform {

/// What a collection view knows.
struct CollectionView::State {
    explicit State(const std::shared_ptr<CollectionViewFlowLayout>& itsLayout)
        : layout(itsLayout)
    {
    }

    /// What items were placed for.
    struct Space {
        QSizeF bounds;
        QMarginsF inset;
        bool isRightToLeft = false;

        friend bool operator==(const Space&, const Space&) = default;
    };

    const std::shared_ptr<CollectionViewFlowLayout> layout;
    std::weak_ptr<CollectionViewDataSource> dataSource;
    std::weak_ptr<CollectionViewDelegate> delegate;

    CollectionViewCells cells;
    qsizetype count = 0;
    bool needsReload = true;
    std::optional<Space> preparedFor;
    /// What frames are mirrored in; of the last layout, also where they aren't.
    double contentWidth = 0;
    /// How far it is scrolled in the direction of reading, where it scrolls horizontally.
    double distanceFromBeginning = 0;
    /// Cells are being given to items; what a scroll asks for then is done by the same pass.
    bool isPlacingCells = false;

    /// While a batch is told.
    std::optional<CollectionViewBatch> batch;
    std::vector<std::function<void()>> batchCompletions;

    qsizetype focusedItem = -1;
    /// The keyboard is in use, by the last that is known.
    bool isFocusShown = false;
    std::shared_ptr<View> focusRing = makeView<View>();
};

} // namespace kovalin::platform
