#include "qml/KovalinTheme.h"

#include <memory>

using Theme = QXSDKKovalinStickerPickerTheme;

namespace {

/// Those of the list that are colours or names of colours.
QList<QColor> colorsOf(const QVariantList& values)
{
    QList<QColor> colors;
    for (const QVariant& value : values) {
        if (const auto color = value.value<QColor>(); color.isValid()) {
            colors.append(color);
        }
    }
    return colors;
}

} // namespace

QXSDKKovalinStickerPickerThemePtr KovalinTheme::baseTheme() const
{
    switch (_base) {
    case Light:
        return Theme::lightTheme();
    case Dark:
        return Theme::darkTheme();
    case Default:
        break;
    }
    return std::make_shared<Theme>();
}

QXSDKKovalinStickerPickerThemePtr KovalinTheme::theme() const
{
    auto theme = baseTheme();
    const auto set = [&theme](void (Theme::*setter)(const QColor&), const QColor& color) {
        if (color.isValid()) {
            (*theme.*setter)(color);
        }
    };
    set(&Theme::setBackgroundColor, _backgroundColor);
    set(&Theme::setTitleTextColor, _titleTextColor);
    set(&Theme::setSubtextColor, _subtextColor);
    set(&Theme::setBorderColor, _borderColor);
    set(&Theme::setErrorRed, _errorRed);
    set(&Theme::setSearchColor, _searchColor);
    set(&Theme::setNavIconColor, _navIconColor);
    set(&Theme::setSearchPillTextColor, _searchPillTextColor);
    set(&Theme::setSearchPillShadowColor, _searchPillShadowColor);
    if (_searchPillColors) {
        theme->setSearchPillColors(colorsOf(*_searchPillColors));
    }
    if (_shouldRandomizeSearchPillColors) {
        theme->setShouldRandomizeSearchPillColors(*_shouldRandomizeSearchPillColors);
    }
    return theme;
}

void KovalinTheme::setSearchPillColors(const QVariantList& colors)
{
    if (_searchPillColors != colors) {
        _searchPillColors = colors;
        Q_EMIT changed();
    }
}

bool KovalinTheme::shouldRandomizeSearchPillColors() const
{
    return _shouldRandomizeSearchPillColors ? *_shouldRandomizeSearchPillColors
                                            : baseTheme()->shouldRandomizeSearchPillColors();
}

void KovalinTheme::setShouldRandomizeSearchPillColors(bool shouldRandomize)
{
    if (_shouldRandomizeSearchPillColors != shouldRandomize) {
        _shouldRandomizeSearchPillColors = shouldRandomize;
        Q_EMIT changed();
    }
}
