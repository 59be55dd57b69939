#include "picker/config/QXSDKKovalinStickerPickerTheme.h"

#include "picker/config/KovalinColors.h"
#include "picker/config/QXSDKKovalinStickerPickerThemeBuilder.h"
#include "platform/foundation/Color.h"

using kovalin::platform::colorWithHexString;

namespace {

QColor white()
{
    return QColor::fromRgbF(1, 1, 1, 1);
}

QColor blackWithAlpha(float alpha)
{
    return QColor::fromRgbF(0, 0, 0, alpha);
}

} // namespace

struct QXSDKKovalinStickerPickerTheme::Colors {
    bool shouldRandomizeSearchPillColors = true;
    QColor background = white();
    QColor titleText = blackWithAlpha(1);
    QColor subtext = kovalinGreyTextColor();
    QColor border = kovalinBorderColor();
    QColor errorRed = kovalinErrorRed();
    QColor search = kovalinGreen();
    QColor navIcon = kovalinNavIconColor();
    QColor searchPillText = white();
    std::optional<QList<QColor>> searchPills = std::nullopt;
    QColor searchPillShadow = blackWithAlpha(0);
};

QXSDKKovalinStickerPickerTheme::QXSDKKovalinStickerPickerTheme()
    : _colors(std::make_unique<Colors>())
{
}

QXSDKKovalinStickerPickerTheme::~QXSDKKovalinStickerPickerTheme() = default;

QXSDKKovalinStickerPickerThemePtr QXSDKKovalinStickerPickerTheme::lightTheme()
{
    auto theme = std::make_shared<QXSDKKovalinStickerPickerTheme>();
    theme->setShouldRandomizeSearchPillColors(false);
    theme->setBorderColor(colorWithHexString(u"#DCDCDC"));
    theme->setSearchPillTextColor(colorWithHexString(u"#7E8185"));
    theme->setSearchPillColors(QList<QColor>{white()});
    theme->setSearchPillShadowColor(blackWithAlpha(0.04F));
    return theme;
}

QXSDKKovalinStickerPickerThemePtr QXSDKKovalinStickerPickerTheme::darkTheme()
{
    auto theme = std::make_shared<QXSDKKovalinStickerPickerTheme>();
    theme->setShouldRandomizeSearchPillColors(false);
    theme->setBackgroundColor(colorWithHexString(u"#202224"));
    theme->setTitleTextColor(white());
    theme->setSubtextColor(colorWithHexString(u"#9A9A9A"));
    theme->setBorderColor(colorWithHexString(u"#080808"));
    theme->setSearchColor(white());
    theme->setNavIconColor(colorWithHexString(u"#A6A6A6"));
    theme->setSearchPillTextColor(colorWithHexString(u"#E0E0E0"));
    theme->setSearchPillColors(QList<QColor>{colorWithHexString(u"#36383A")});
    theme->setSearchPillShadowColor(blackWithAlpha(0.12F));
    return theme;
}

QXSDKKovalinStickerPickerThemeBuilder QXSDKKovalinStickerPickerTheme::toBuilder() const
{
    auto theme = std::make_shared<QXSDKKovalinStickerPickerTheme>();
    *theme->_colors = *_colors;
    theme->_colors->searchPills = std::nullopt;
    return QXSDKKovalinStickerPickerThemeBuilder(std::move(theme));
}

bool QXSDKKovalinStickerPickerTheme::shouldRandomizeSearchPillColors() const
{
    return _colors->shouldRandomizeSearchPillColors;
}

void QXSDKKovalinStickerPickerTheme::setShouldRandomizeSearchPillColors(bool shouldRandomize)
{
    _colors->shouldRandomizeSearchPillColors = shouldRandomize;
}

QColor QXSDKKovalinStickerPickerTheme::backgroundColor() const
{
    return _colors->background;
}

void QXSDKKovalinStickerPickerTheme::setBackgroundColor(const QColor& color)
{
    _colors->background = color;
}

QColor QXSDKKovalinStickerPickerTheme::titleTextColor() const
{
    return _colors->titleText;
}

void QXSDKKovalinStickerPickerTheme::setTitleTextColor(const QColor& color)
{
    _colors->titleText = color;
}

QColor QXSDKKovalinStickerPickerTheme::subtextColor() const
{
    return _colors->subtext;
}

void QXSDKKovalinStickerPickerTheme::setSubtextColor(const QColor& color)
{
    _colors->subtext = color;
}

QColor QXSDKKovalinStickerPickerTheme::borderColor() const
{
    return _colors->border;
}

void QXSDKKovalinStickerPickerTheme::setBorderColor(const QColor& color)
{
    _colors->border = color;
}

QColor QXSDKKovalinStickerPickerTheme::errorRed() const
{
    return _colors->errorRed;
}

void QXSDKKovalinStickerPickerTheme::setErrorRed(const QColor& color)
{
    _colors->errorRed = color;
}

QColor QXSDKKovalinStickerPickerTheme::searchColor() const
{
    return _colors->search;
}

void QXSDKKovalinStickerPickerTheme::setSearchColor(const QColor& color)
{
    _colors->search = color;
}

QColor QXSDKKovalinStickerPickerTheme::navIconColor() const
{
    return _colors->navIcon;
}

void QXSDKKovalinStickerPickerTheme::setNavIconColor(const QColor& color)
{
    _colors->navIcon = color;
}

QColor QXSDKKovalinStickerPickerTheme::searchPillTextColor() const
{
    return _colors->searchPillText;
}

void QXSDKKovalinStickerPickerTheme::setSearchPillTextColor(const QColor& color)
{
    _colors->searchPillText = color;
}

std::optional<QList<QColor>> QXSDKKovalinStickerPickerTheme::searchPillColors() const
{
    return _colors->searchPills;
}

void QXSDKKovalinStickerPickerTheme::setSearchPillColors(const std::optional<QList<QColor>>& colors)
{
    _colors->searchPills = colors;
}

QColor QXSDKKovalinStickerPickerTheme::searchPillShadowColor() const
{
    return _colors->searchPillShadow;
}

void QXSDKKovalinStickerPickerTheme::setSearchPillShadowColor(const QColor& color)
{
    _colors->searchPillShadow = color;
}
