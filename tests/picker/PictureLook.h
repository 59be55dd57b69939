#pragma once

#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/config/QXSDKKovalinStickerPickerConfigBuilder.h"
#include "picker/config/QXSDKKovalinStickerPickerTheme.h"

#include <QtCore/QString>

#include <array>

namespace kovalin::test {

/// Points: narrow and usual phones, the first width of five columns, a tablet.
constexpr std::array<int, 4> pictureWidths{320, 412, 508, 1024};

/// The theme and the direction that a picture of the picker is drawn in; its name is a part of the picture's.
struct PictureLook {
    bool isDark = false;
    Qt::LayoutDirection direction = Qt::LeftToRight;

    [[nodiscard]] static std::array<PictureLook, 4> all()
    {
        return {PictureLook{}, PictureLook{.isDark = true}, PictureLook{.direction = Qt::RightToLeft},
                PictureLook{.isDark = true, .direction = Qt::RightToLeft}};
    }

    [[nodiscard]] QString name() const
    {
        return (isDark ? QStringLiteral("dark") : QStringLiteral("light")) +
               (direction == Qt::RightToLeft ? QStringLiteral("_right_to_left") : QString());
    }

    [[nodiscard]] QXSDKKovalinStickerPickerThemePtr theme() const
    {
        return isDark ? QXSDKKovalinStickerPickerTheme::darkTheme() : QXSDKKovalinStickerPickerTheme::lightTheme();
    }

    [[nodiscard]] QXSDKKovalinStickerPickerConfigPtr config() const
    {
        return QXSDKKovalinStickerPickerConfigBuilder().withTheme(theme()).build();
    }
};

} // namespace kovalin::test
