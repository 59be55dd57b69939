#pragma once

#include "picker/config/QXSDKKovalinStickerPickerThemeBuilder.h"

#include <array>
#include <string>

/// The columns of a theme's table.
struct ThemeColors {
    QColor plain;
    QColor light;
    QColor dark;
};

/// One colour of a theme: how it is read, written and built, and what the ready themes have there. Written down independently of
/// the library.
struct ThemeField {
    std::string name;
    QColor (QXSDKKovalinStickerPickerTheme::*read)() const;
    void (QXSDKKovalinStickerPickerTheme::*write)(const QColor&);
    QXSDKKovalinStickerPickerThemeBuilder& (QXSDKKovalinStickerPickerThemeBuilder::*with)(const QColor&);
    ThemeColors colors;
};

inline void PrintTo(const ThemeField& field, std::ostream* stream)
{
    *stream << field.name;
}

inline std::array<ThemeField, 9> themeFields()
{
    using Theme = QXSDKKovalinStickerPickerTheme;
    using Builder = QXSDKKovalinStickerPickerThemeBuilder;
    const QColor white(255, 255, 255);
    const QColor black(0, 0, 0);
    const QColor green = QColor::fromHsvF(0.4305F, 0.72F, 0.79F);
    const QColor red = QColor::fromRgbF(0.9059F, 0.298F, 0.2353F);
    const QColor grey = QColor::fromRgbF(0.5F, 0.51F, 0.53F);
    const QColor border = QColor::fromRgbF(0.85F, 0.85F, 0.85F);
    const QColor navIcon(0x85, 0x8E, 0x98);
    return {
        ThemeField{"backgroundColor", &Theme::backgroundColor, &Theme::setBackgroundColor,
                   &Builder::withBackgroundColor, ThemeColors{white, white, QColor(0x20, 0x22, 0x24)}},
        ThemeField{"titleTextColor", &Theme::titleTextColor, &Theme::setTitleTextColor, &Builder::withTitleTextColor,
                   ThemeColors{black, black, white}},
        ThemeField{"subtextColor", &Theme::subtextColor, &Theme::setSubtextColor, &Builder::withSubtextColor,
                   ThemeColors{grey, grey, QColor(0x9A, 0x9A, 0x9A)}},
        ThemeField{"borderColor", &Theme::borderColor, &Theme::setBorderColor, &Builder::withBorderColor,
                   ThemeColors{border, QColor(0xDC, 0xDC, 0xDC), QColor(0x08, 0x08, 0x08)}},
        ThemeField{"errorRed", &Theme::errorRed, &Theme::setErrorRed, &Builder::withErrorRed,
                   ThemeColors{red, red, red}},
        ThemeField{"searchColor", &Theme::searchColor, &Theme::setSearchColor, &Builder::withSearchColor,
                   ThemeColors{green, green, white}},
        ThemeField{"navIconColor", &Theme::navIconColor, &Theme::setNavIconColor, &Builder::withNavIconColor,
                   ThemeColors{navIcon, navIcon, QColor(0xA6, 0xA6, 0xA6)}},
        ThemeField{"searchPillTextColor", &Theme::searchPillTextColor, &Theme::setSearchPillTextColor,
                   &Builder::withSearchPillTextColor,
                   ThemeColors{white, QColor(0x7E, 0x81, 0x85), QColor(0xE0, 0xE0, 0xE0)}},
        ThemeField{"searchPillShadowColor", &Theme::searchPillShadowColor, &Theme::setSearchPillShadowColor,
                   &Builder::withSearchPillShadowColor,
                   ThemeColors{QColor(0, 0, 0, 0), QColor::fromRgbF(0, 0, 0, 0.04F), QColor::fromRgbF(0, 0, 0, 0.12F)}},
    };
}
