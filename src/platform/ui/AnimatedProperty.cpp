#include "platform/ui/AnimatedProperty.h"

#include <algorithm>

namespace kovalin::platform {

PropertyValue valueOf(const QColor& color)
{
    if (!color.isValid()) {
        return {};
    }
    const QColor rgb = color.toRgb();
    const double alpha = rgb.alphaF();
    return {rgb.redF() * alpha, rgb.greenF() * alpha, rgb.blueF() * alpha, alpha, 0};
}

QRectF frameOf(const PropertyValue& value)
{
    return {value[0], value[1], std::max(value[2], 0.0), std::max(value[3], 0.0)};
}

ViewTransform transformOf(const PropertyValue& value)
{
    return {value[0], value[1], value[2], value[3], value[4]};
}

QColor colorOf(const PropertyValue& value)
{
    const double alpha = std::clamp(value[3], 0.0, 1.0);
    if (alpha <= 0) {
        return QColor::fromRgbF(0, 0, 0, 0);
    }
    const auto channel = [alpha](double premultiplied) {
        return static_cast<float>(std::clamp(premultiplied / alpha, 0.0, 1.0));
    };
    return QColor::fromRgbF(channel(value[0]), channel(value[1]), channel(value[2]), static_cast<float>(alpha));
}

} // namespace kovalin::platform
