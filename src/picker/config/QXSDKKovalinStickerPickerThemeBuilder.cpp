#include "picker/config/QXSDKKovalinStickerPickerThemeBuilder.h"

#include "platform/foundation/PlatformException.h"

#include <utility>

using Builder = QXSDKKovalinStickerPickerThemeBuilder;

Builder::QXSDKKovalinStickerPickerThemeBuilder()
    : QXSDKKovalinStickerPickerThemeBuilder(std::make_shared<QXSDKKovalinStickerPickerTheme>())
{
}

Builder::QXSDKKovalinStickerPickerThemeBuilder(QXSDKKovalinStickerPickerThemePtr theme)
    : _theme(std::move(theme))
{
}

Builder::~QXSDKKovalinStickerPickerThemeBuilder() = default;

Builder& Builder::withBackgroundColor(const QColor& color)
{
    _theme->setBackgroundColor(color);
    return *this;
}

Builder& Builder::withTitleTextColor(const QColor& color)
{
    _theme->setTitleTextColor(color);
    return *this;
}

Builder& Builder::withSubtextColor(const QColor& color)
{
    _theme->setSubtextColor(color);
    return *this;
}

Builder& Builder::withBorderColor(const QColor& color)
{
    _theme->setBorderColor(color);
    return *this;
}

Builder& Builder::withSearchColor(const QColor& color)
{
    _theme->setSearchColor(color);
    return *this;
}

Builder& Builder::withErrorRed(const QColor& color)
{
    _theme->setErrorRed(color);
    return *this;
}

Builder& Builder::withNavIconColor(const QColor& color)
{
    _theme->setNavIconColor(color);
    return *this;
}

Builder& Builder::withSearchPillTextColor(const QColor& color)
{
    _theme->setSearchPillTextColor(color);
    return *this;
}

Builder& Builder::withSearchPillShadowColor(const QColor& color)
{
    _theme->setSearchPillShadowColor(color);
    return *this;
}

Builder& Builder::withShouldRandomizeSearchPillColors(bool shouldRandomize)
{
    _theme->setShouldRandomizeSearchPillColors(shouldRandomize);
    return *this;
}

Builder& Builder::withSearchPillColors(const std::optional<QList<QColor>>& colors)
{
    if (colors && colors->isEmpty()) {
        throw kovalin::platform::PlatformException(QStringLiteral("NSInvalidArgumentException"),
                                                   QStringLiteral("searchPillColors cannot be empty!"));
    }
    _theme->setSearchPillColors(colors);
    return *this;
}

QXSDKKovalinStickerPickerThemePtr Builder::build() const
{
    return _theme;
}
