#pragma once

#include "platform/ui/CollectionViewFlowLayout.h"

/// The flow layout of the picker's lists: items grow and appear, shrink and fade, and run from right to left where the
/// language does. Main thread only.
class QXSDKKovalinFlowLayout final : public kovalin::platform::CollectionViewFlowLayout {
public:
    /// Half the size and clear.
    [[nodiscard]] kovalin::platform::CollectionViewLayoutAttributes
    initialLayoutAttributesForAppearingItemAtIndexPath(qsizetype item) const override;
    /// The same.
    [[nodiscard]] kovalin::platform::CollectionViewLayoutAttributes
    finalLayoutAttributesForDisappearingItemAtIndexPath(qsizetype item) const override;
    /// True.
    [[nodiscard]] bool flipsHorizontallyInOppositeLayoutDirection() const override;
};
