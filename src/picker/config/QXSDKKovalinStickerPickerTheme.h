#pragma once

#include "QXSDKKovalinKit/Export.h"

#include <QtCore/QList>
#include <QtGui/QColor>

#include <memory>
#include <optional>

class QXSDKKovalinStickerPickerTheme;
class QXSDKKovalinStickerPickerThemeBuilder;

/// Themes are shared: who changes one changes it for all that hold it.
using QXSDKKovalinStickerPickerThemePtr = std::shared_ptr<QXSDKKovalinStickerPickerTheme>;

/// The colours of every view of a picker. A view takes its colours when it is made and doesn't watch the theme: a change shows in
/// views that are made after it.
///
/// One thread at a time, and the main one once a picker has it. Colours are stored as they are given, without a test. Compare them
/// by red, green, blue and alpha: QColor keeps 16 bits of each, so that a read alpha of 0.04 is within 1/65535 of it.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinStickerPickerTheme final {
public:
    // Making.

    /// A theme of the default colours: dark on white.
    QXSDKKovalinStickerPickerTheme();
    ~QXSDKKovalinStickerPickerTheme();
    Q_DISABLE_COPY_MOVE(QXSDKKovalinStickerPickerTheme)

    /// A new theme, light, with quiet pills.
    [[nodiscard]] static QXSDKKovalinStickerPickerThemePtr lightTheme();

    /// A new theme, light on dark.
    [[nodiscard]] static QXSDKKovalinStickerPickerThemePtr darkTheme();

    /// A new builder, whose theme starts with the colours of this one, but for `searchPillColors`, which start absent.
    [[nodiscard]] QXSDKKovalinStickerPickerThemeBuilder toBuilder() const;

    // Reading and changing.

    /// Whether the pills of tags take their colours in random order.
    [[nodiscard]] bool shouldRandomizeSearchPillColors() const;
    void setShouldRandomizeSearchPillColors(bool shouldRandomize);

    /// Behind everything.
    [[nodiscard]] QColor backgroundColor() const;
    void setBackgroundColor(const QColor& color);

    /// Titles, what is typed, and a tile's picture while it loads.
    [[nodiscard]] QColor titleTextColor() const;
    void setTitleTextColor(const QColor& color);

    /// Lesser texts.
    [[nodiscard]] QColor subtextColor() const;
    void setSubtextColor(const QColor& color);

    /// Hairlines.
    [[nodiscard]] QColor borderColor() const;
    void setBorderColor(const QColor& color);

    /// The button of an error.
    [[nodiscard]] QColor errorRed() const;
    void setErrorRed(const QColor& color);

    /// The search's icon, placeholder and cursor.
    [[nodiscard]] QColor searchColor() const;
    void setSearchColor(const QColor& color);

    /// The icons that lead back and clear.
    [[nodiscard]] QColor navIconColor() const;
    void setNavIconColor(const QColor& color);

    /// The texts of pills.
    [[nodiscard]] QColor searchPillTextColor() const;
    void setSearchPillTextColor(const QColor& color);

    /// What pills are filled with; absent or empty for the picker's own set of colours.
    [[nodiscard]] std::optional<QList<QColor>> searchPillColors() const;
    void setSearchPillColors(const std::optional<QList<QColor>>& colors);

    /// The shadows of pills, alpha included.
    [[nodiscard]] QColor searchPillShadowColor() const;
    void setSearchPillShadowColor(const QColor& color);

private:
    struct Colors;

    const std::unique_ptr<Colors> _colors;
};
