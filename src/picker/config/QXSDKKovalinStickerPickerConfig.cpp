#include "picker/config/QXSDKKovalinStickerPickerConfig.h"

struct QXSDKKovalinStickerPickerConfig::Choices {
    bool showSearchBar = true;
    bool showSearchPills = true;
    QXSDKKovalinStickerPickerThemePtr theme = std::make_shared<QXSDKKovalinStickerPickerTheme>();
};

QXSDKKovalinStickerPickerConfig::QXSDKKovalinStickerPickerConfig()
    : _choices(std::make_unique<Choices>())
{
}

QXSDKKovalinStickerPickerConfig::~QXSDKKovalinStickerPickerConfig() = default;

bool QXSDKKovalinStickerPickerConfig::showSearchBar() const
{
    return _choices->showSearchBar;
}

void QXSDKKovalinStickerPickerConfig::setShowSearchBar(bool show)
{
    _choices->showSearchBar = show;
}

bool QXSDKKovalinStickerPickerConfig::showSearchPills() const
{
    return _choices->showSearchPills;
}

void QXSDKKovalinStickerPickerConfig::setShowSearchPills(bool show)
{
    _choices->showSearchPills = show;
}

QXSDKKovalinStickerPickerThemePtr QXSDKKovalinStickerPickerConfig::theme() const
{
    return _choices->theme;
}

void QXSDKKovalinStickerPickerConfig::setTheme(const QXSDKKovalinStickerPickerThemePtr& theme)
{
    _choices->theme = theme != nullptr ? theme : std::make_shared<QXSDKKovalinStickerPickerTheme>();
}
