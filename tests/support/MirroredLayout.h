#pragma once

#include "platform/ui/CollectionViewFlowLayout.h"

namespace kovalin::test {

/// Runs from right to left where the user interface does.
class MirroredLayout final : public platform::CollectionViewFlowLayout {
public:
    [[nodiscard]] bool flipsHorizontallyInOppositeLayoutDirection() const override { return true; }
};

} // namespace kovalin::test
