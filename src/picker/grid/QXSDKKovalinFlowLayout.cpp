#include "picker/grid/QXSDKKovalinFlowLayout.h"

using namespace kovalin::platform;

namespace {

CollectionViewLayoutAttributes smallAndClear(CollectionViewLayoutAttributes attributes)
{
    constexpr double scale = 0.5;
    attributes.transform = ViewTransform::scale(scale, scale);
    attributes.alpha = 0.0;
    return attributes;
}

} // namespace

CollectionViewLayoutAttributes
QXSDKKovalinFlowLayout::initialLayoutAttributesForAppearingItemAtIndexPath(qsizetype item) const
{
    return smallAndClear(CollectionViewFlowLayout::initialLayoutAttributesForAppearingItemAtIndexPath(item));
}

CollectionViewLayoutAttributes
QXSDKKovalinFlowLayout::finalLayoutAttributesForDisappearingItemAtIndexPath(qsizetype item) const
{
    return smallAndClear(CollectionViewFlowLayout::finalLayoutAttributesForDisappearingItemAtIndexPath(item));
}

bool QXSDKKovalinFlowLayout::flipsHorizontallyInOppositeLayoutDirection() const
{
    return true;
}
