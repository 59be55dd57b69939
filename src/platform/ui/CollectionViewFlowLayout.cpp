#include "platform/ui/CollectionViewFlowLayout.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace kovalin::platform {

namespace {

/// What sums of parts of a line may miss the line by, in points.
constexpr double tolerance = 1e-3;
constexpr double defaultSpacing = 10;

double sound(double length)
{
    return std::isfinite(length) ? std::max(length, 0.0) : 0;
}

/// Along the direction of scrolling.
struct Line {
    CollectionViewRange items;
    double start = 0;
    double end = 0;
};

/// Where everything is, reading from left to right.
struct Placement {
    std::vector<QRectF> frames;
    std::vector<Line> lines;
    QSizeF contentSize;
    bool isFlipped = false;
    /// What frames are mirrored in.
    double width = 0;

    [[nodiscard]] QRectF mirrored(const QRectF& area) const
    {
        return isFlipped ? QRectF(width - area.right(), area.y(), area.width(), area.height()) : area;
    }
};

} // namespace

struct CollectionViewFlowLayout::State {
    ScrollDirection direction = ScrollDirection::Vertical;
    double lineSpacing = defaultSpacing;
    double interitemSpacing = defaultSpacing;
    Placement current;
    /// Of the preparation before.
    Placement former;

    [[nodiscard]] bool isHorizontal() const { return direction == ScrollDirection::Horizontal; }

    [[nodiscard]] static CollectionViewLayoutAttributes attributes(const Placement& placement, qsizetype item)
    {
        if (item < 0 || item >= std::ssize(placement.frames)) {
            return {};
        }
        return {placement.mirrored(placement.frames[static_cast<size_t>(item)]), 1, {}};
    }

    /// The items from `first` on that fit into a line of `length`: one at least.
    [[nodiscard]] CollectionViewRange lineFrom(qsizetype first, const std::vector<QSizeF>& sizes, double length) const
    {
        double used = lengthOf(sizes[static_cast<size_t>(first)]);
        qsizetype end = first + 1;
        for (; end < std::ssize(sizes); ++end) {
            used += interitemSpacing + lengthOf(sizes[static_cast<size_t>(end)]);
            if (used > length + tolerance) {
                break;
            }
        }
        return {first, end};
    }

    /// Of an item along its line, and across.
    [[nodiscard]] double lengthOf(const QSizeF& size) const { return isHorizontal() ? size.height() : size.width(); }
    [[nodiscard]] double breadthOf(const QSizeF& size) const { return isHorizontal() ? size.width() : size.height(); }

    /// Puts the items of a line into their places. `spacing` is that of the line before, and becomes this one's.
    Line place(const CollectionViewRange& items, const std::vector<QSizeF>& sizes, double start, double length,
               double& spacing)
    {
        double sum = 0;
        double breadth = 0;
        for (qsizetype item = items.first; item < items.end; ++item) {
            sum += lengthOf(sizes[static_cast<size_t>(item)]);
            breadth = std::max(breadth, breadthOf(sizes[static_cast<size_t>(item)]));
        }
        const auto gaps = static_cast<double>(items.end - items.first - 1);
        const double widest = gaps > 0 ? std::max((length - sum) / gaps, interitemSpacing) : interitemSpacing;
        const bool isLast = items.end == std::ssize(sizes);
        double along = 0;
        if (isHorizontal()) {
            spacing = interitemSpacing;
            along = std::max((length - sum - gaps * spacing) / 2, 0.0);
        } else {
            spacing = isLast ? std::min(spacing, widest) : widest;
        }
        for (qsizetype item = items.first; item < items.end; ++item) {
            const QSizeF size = sizes[static_cast<size_t>(item)];
            const double across = start + (breadth - breadthOf(size)) / 2;
            current.frames.emplace_back(isHorizontal() ? QPointF(across, along) : QPointF(along, across), size);
            along += lengthOf(size) + spacing;
        }
        return {items, start, start + breadth};
    }

    [[nodiscard]] std::vector<Line>::const_iterator lineOf(qsizetype item) const
    {
        return std::upper_bound(current.lines.begin(), current.lines.end(), item,
                                [](qsizetype value, const Line& line) { return value < line.items.end; });
    }
};

CollectionViewFlowLayout::CollectionViewFlowLayout()
    : _flow(std::make_unique<State>())
{
}

CollectionViewFlowLayout::~CollectionViewFlowLayout() = default;

ScrollDirection CollectionViewFlowLayout::scrollDirection() const
{
    return _flow->direction;
}

void CollectionViewFlowLayout::setScrollDirection(ScrollDirection direction)
{
    _flow->direction = direction;
}

double CollectionViewFlowLayout::minimumLineSpacing() const
{
    return _flow->lineSpacing;
}

void CollectionViewFlowLayout::setMinimumLineSpacing(double spacing)
{
    _flow->lineSpacing = sound(spacing);
}

double CollectionViewFlowLayout::minimumInteritemSpacing() const
{
    return _flow->interitemSpacing;
}

void CollectionViewFlowLayout::setMinimumInteritemSpacing(double spacing)
{
    _flow->interitemSpacing = sound(spacing);
}

CollectionViewLayoutAttributes
CollectionViewFlowLayout::initialLayoutAttributesForAppearingItemAtIndexPath(qsizetype item) const
{
    return State::attributes(_flow->current, item);
}

CollectionViewLayoutAttributes
CollectionViewFlowLayout::finalLayoutAttributesForDisappearingItemAtIndexPath(qsizetype item) const
{
    return State::attributes(_flow->former, item);
}

bool CollectionViewFlowLayout::flipsHorizontallyInOppositeLayoutDirection() const
{
    return false;
}

void CollectionViewFlowLayout::prepare(qsizetype count, const std::function<QSizeF(qsizetype)>& sizeOfItem,
                                       const QSizeF& available, bool isRightToLeft)
{
    State& state = *_flow;
    std::vector<QSizeF> sizes(static_cast<size_t>(std::max<qsizetype>(count, 0)));
    for (size_t item = 0; item < sizes.size(); ++item) {
        const QSizeF size = sizeOfItem(static_cast<qsizetype>(item));
        sizes[item] = {sound(size.width()), sound(size.height())};
    }

    state.former = std::exchange(state.current, {});
    state.current.frames.reserve(sizes.size());
    const double length = sound(state.lengthOf(available));
    double position = 0;
    double spacing = state.interitemSpacing;
    for (qsizetype first = 0; first < std::ssize(sizes);) {
        position += first > 0 ? state.lineSpacing : 0;
        const auto items = state.lineFrom(first, sizes, length);
        state.current.lines.push_back(state.place(items, sizes, position, length, spacing));
        position = state.current.lines.back().end;
        first = items.end;
    }

    state.current.contentSize = state.isHorizontal() ? QSizeF(position, length) : QSizeF(length, position);
    state.current.isFlipped = isRightToLeft && flipsHorizontallyInOppositeLayoutDirection();
    state.current.width = std::max(state.current.contentSize.width(), sound(available.width()));
    if (state.isHorizontal() && state.former.isFlipped && state.current.isFlipped) {
        // Content that begins at the right grows to the left: where it was counts from the same end.
        state.former.width = state.current.width;
    }
}

qsizetype CollectionViewFlowLayout::numberOfItems() const
{
    return std::ssize(_flow->current.frames);
}

QSizeF CollectionViewFlowLayout::contentSize() const
{
    return _flow->current.contentSize;
}

CollectionViewLayoutAttributes CollectionViewFlowLayout::layoutAttributesForItemAtIndexPath(qsizetype item) const
{
    return State::attributes(_flow->current, item);
}

CollectionViewLayoutAttributes CollectionViewFlowLayout::formerLayoutAttributesForItemAtIndexPath(qsizetype item) const
{
    return State::attributes(_flow->former, item);
}

CollectionViewRange CollectionViewFlowLayout::itemsInRect(const QRectF& area, qsizetype extraLines) const
{
    const auto& lines = _flow->current.lines;
    const QRectF unflipped = _flow->current.mirrored(area);
    const double start = _flow->isHorizontal() ? unflipped.left() : unflipped.top();
    const double end = _flow->isHorizontal() ? unflipped.right() : unflipped.bottom();
    const auto first =
        std::partition_point(lines.begin(), lines.end(), [&](const Line& line) { return line.end <= start; });
    const auto last = std::partition_point(first, lines.end(), [&](const Line& line) { return line.start < end; });
    if (first == last) {
        return {};
    }
    const auto from = first - std::min<qsizetype>(extraLines, first - lines.begin());
    const auto to = last + std::min<qsizetype>(extraLines, lines.end() - last);
    return {from->items.first, std::prev(to)->items.end};
}

qsizetype CollectionViewFlowLayout::itemInNeighbouringLine(qsizetype item, int direction) const
{
    const auto& lines = _flow->current.lines;
    const auto line = _flow->lineOf(item);
    if (item < 0 || line == lines.end() || (direction < 0 && line == lines.begin()) ||
        (direction > 0 && std::next(line) == lines.end())) {
        return item;
    }
    const auto middle = [this](qsizetype place) {
        const QPointF center = _flow->current.frames[static_cast<size_t>(place)].center();
        return _flow->isHorizontal() ? center.y() : center.x();
    };
    const auto neighbour = direction < 0 ? std::prev(line) : std::next(line);
    qsizetype nearest = neighbour->items.first;
    for (qsizetype other = nearest; other < neighbour->items.end; ++other) {
        if (std::abs(middle(other) - middle(item)) < std::abs(middle(nearest) - middle(item))) {
            nearest = other;
        }
    }
    return nearest;
}

bool CollectionViewFlowLayout::isFlipped() const
{
    return _flow->current.isFlipped;
}

} // namespace kovalin::platform
