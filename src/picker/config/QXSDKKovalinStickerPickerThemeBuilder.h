#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "picker/config/QXSDKKovalinStickerPickerTheme.h"

#include <QtCore/QList>
#include <QtGui/QColor>

#include <optional>

/// Makes a theme, colour by colour:
///
///     const auto theme = QXSDKKovalinStickerPickerTheme::darkTheme()->toBuilder().withSearchColor(Qt::yellow).build();
///
/// One thread at a time. It holds one theme, which `build` hands out; the operations go on changing it after that.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinStickerPickerThemeBuilder final {
public:
    /// Starts from the default colours.
    QXSDKKovalinStickerPickerThemeBuilder();
    ~QXSDKKovalinStickerPickerThemeBuilder();
    Q_DISABLE_COPY_MOVE(QXSDKKovalinStickerPickerThemeBuilder)

    // Changing: each sets what it is named for, and returns this builder.

    QXSDKKovalinStickerPickerThemeBuilder& withBackgroundColor(const QColor& color);
    QXSDKKovalinStickerPickerThemeBuilder& withTitleTextColor(const QColor& color);
    QXSDKKovalinStickerPickerThemeBuilder& withSubtextColor(const QColor& color);
    QXSDKKovalinStickerPickerThemeBuilder& withBorderColor(const QColor& color);
    QXSDKKovalinStickerPickerThemeBuilder& withSearchColor(const QColor& color);
    QXSDKKovalinStickerPickerThemeBuilder& withErrorRed(const QColor& color);
    QXSDKKovalinStickerPickerThemeBuilder& withNavIconColor(const QColor& color);
    QXSDKKovalinStickerPickerThemeBuilder& withSearchPillTextColor(const QColor& color);
    QXSDKKovalinStickerPickerThemeBuilder& withSearchPillShadowColor(const QColor& color);
    QXSDKKovalinStickerPickerThemeBuilder& withShouldRandomizeSearchPillColors(bool shouldRandomize);

    /// Absent colours stand for the picker's own set. An empty list is refused with a PlatformException named
    /// "NSInvalidArgumentException", reason "searchPillColors cannot be empty!", and changes nothing.
    QXSDKKovalinStickerPickerThemeBuilder& withSearchPillColors(const std::optional<QList<QColor>>& colors);

    /// The builder's own theme, the same one at each call; never null.
    [[nodiscard]] QXSDKKovalinStickerPickerThemePtr build() const;

private:
    friend class QXSDKKovalinStickerPickerTheme;
    explicit QXSDKKovalinStickerPickerThemeBuilder(QXSDKKovalinStickerPickerThemePtr theme);

    const QXSDKKovalinStickerPickerThemePtr _theme;
};
