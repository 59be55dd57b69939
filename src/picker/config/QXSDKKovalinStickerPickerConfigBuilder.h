#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "picker/config/QXSDKKovalinStickerPickerConfig.h"

/// Makes a configuration, choice by choice:
///
///     const auto config = QXSDKKovalinStickerPickerConfigBuilder().withShowSearchPills(false).build();
///
/// One thread at a time. It holds one configuration, which `build` hands out; the operations go on changing it after that.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinStickerPickerConfigBuilder final {
public:
    /// Starts from the defaults of the configuration.
    QXSDKKovalinStickerPickerConfigBuilder();
    ~QXSDKKovalinStickerPickerConfigBuilder();
    Q_DISABLE_COPY_MOVE(QXSDKKovalinStickerPickerConfigBuilder)

    // Changing: each sets what it is named for, and returns this builder.

    QXSDKKovalinStickerPickerConfigBuilder& withShowSearchBar(bool show);
    QXSDKKovalinStickerPickerConfigBuilder& withShowSearchPills(bool show);

    /// Null stands for a new theme of the default colours.
    QXSDKKovalinStickerPickerConfigBuilder& withTheme(const QXSDKKovalinStickerPickerThemePtr& theme);

    /// The builder's own configuration, the same one at each call; never null.
    [[nodiscard]] QXSDKKovalinStickerPickerConfigPtr build() const;

private:
    const QXSDKKovalinStickerPickerConfigPtr _config;
};
