#include "kits/core/QXSDKFont.h"

#include <QtGui/QGuiApplication>

#include <algorithm>
#include <cmath>

namespace {

/// Far larger than any text, and far below what a font engine can count with.
constexpr double maxSize = 1000;

QFont fontOfSize(double size, QFont::Weight weight)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(std::isfinite(size) ? static_cast<int>(std::lround(std::clamp(size, 1.0, maxSize))) : 1);
    font.setWeight(weight);
    return font;
}

} // namespace

QFont qxsdkRegularFontOfSize(double size)
{
    return fontOfSize(size, QFont::Normal);
}

QFont qxsdkBoldFontOfSize(double size)
{
    return fontOfSize(size, QFont::Bold);
}
