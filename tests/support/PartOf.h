#pragma once

#include "platform/ui/View.h"

#include <memory>

namespace kovalin::test {

/// A subview by its place in the order; null where there is none of that class.
template <class T>
[[nodiscard]] std::shared_ptr<T> partOf(const platform::View& view, qsizetype index)
{
    return std::dynamic_pointer_cast<T>(view.subviews().value(index));
}

} // namespace kovalin::test
