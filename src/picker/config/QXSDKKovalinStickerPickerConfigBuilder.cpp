#include "picker/config/QXSDKKovalinStickerPickerConfigBuilder.h"

using Builder = QXSDKKovalinStickerPickerConfigBuilder;

Builder::QXSDKKovalinStickerPickerConfigBuilder()
    : _config(std::make_shared<QXSDKKovalinStickerPickerConfig>())
{
}

Builder::~QXSDKKovalinStickerPickerConfigBuilder() = default;

Builder& Builder::withShowSearchBar(bool show)
{
    _config->setShowSearchBar(show);
    return *this;
}

Builder& Builder::withShowSearchPills(bool show)
{
    _config->setShowSearchPills(show);
    return *this;
}

Builder& Builder::withTheme(const QXSDKKovalinStickerPickerThemePtr& theme)
{
    _config->setTheme(theme);
    return *this;
}

QXSDKKovalinStickerPickerConfigPtr Builder::build() const
{
    return _config;
}
