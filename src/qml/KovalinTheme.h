#pragma once

#include "picker/config/QXSDKKovalinStickerPickerTheme.h"

#include <QtCore/QObject>
#include <QtCore/QVariantList>
#include <QtGui/QColor>

#include <QtQml/qqmlregistration.h>

#include <optional>

/// The colours of a picker, for QML: those of a named theme but for what is set.
///
///     KovalinTheme { base: KovalinTheme.Dark; searchColor: "gold" }
///
/// Main thread only. A colour that isn't set reads as an invalid one.
class KovalinTheme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Base base MEMBER _base NOTIFY changed)
    /// Behind everything.
    Q_PROPERTY(QColor backgroundColor MEMBER _backgroundColor NOTIFY changed)
    /// Titles, what is typed, and a tile's picture while it loads.
    Q_PROPERTY(QColor titleTextColor MEMBER _titleTextColor NOTIFY changed)
    /// Lesser texts.
    Q_PROPERTY(QColor subtextColor MEMBER _subtextColor NOTIFY changed)
    /// Hairlines.
    Q_PROPERTY(QColor borderColor MEMBER _borderColor NOTIFY changed)
    /// The button of an error.
    Q_PROPERTY(QColor errorRed MEMBER _errorRed NOTIFY changed)
    /// The search's icon, placeholder and cursor.
    Q_PROPERTY(QColor searchColor MEMBER _searchColor NOTIFY changed)
    /// The icons that lead back and clear.
    Q_PROPERTY(QColor navIconColor MEMBER _navIconColor NOTIFY changed)
    /// The texts of pills.
    Q_PROPERTY(QColor searchPillTextColor MEMBER _searchPillTextColor NOTIFY changed)
    /// The shadows of pills, alpha included.
    Q_PROPERTY(QColor searchPillShadowColor MEMBER _searchPillShadowColor NOTIFY changed)
    /// A list of what pills are filled with, an empty one for the picker's own set of colours.
    Q_PROPERTY(QVariantList searchPillColors READ searchPillColors WRITE setSearchPillColors NOTIFY changed)
    /// Whether the pills take their colours in random order.
    Q_PROPERTY(bool shouldRandomizeSearchPillColors READ shouldRandomizeSearchPillColors WRITE
                   setShouldRandomizeSearchPillColors NOTIFY changed)

public:
    enum Base {
        Default, ///< Dark on white, with coloured pills.
        Light,   ///< Dark on white, with quiet pills.
        Dark,    ///< Light on dark, with quiet pills.
    };
    Q_ENUM(Base)

    using QObject::QObject;

    /// What a picker is made with; a new one at each call.
    [[nodiscard]] QXSDKKovalinStickerPickerThemePtr theme() const;

    [[nodiscard]] QVariantList searchPillColors() const { return _searchPillColors.value_or(QVariantList()); }
    void setSearchPillColors(const QVariantList& colors);
    [[nodiscard]] bool shouldRandomizeSearchPillColors() const;
    void setShouldRandomizeSearchPillColors(bool shouldRandomize);

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] QXSDKKovalinStickerPickerThemePtr baseTheme() const;

    Base _base = Default;
    QColor _backgroundColor;
    QColor _titleTextColor;
    QColor _subtextColor;
    QColor _borderColor;
    QColor _errorRed;
    QColor _searchColor;
    QColor _navIconColor;
    QColor _searchPillTextColor;
    QColor _searchPillShadowColor;
    std::optional<QVariantList> _searchPillColors;
    std::optional<bool> _shouldRandomizeSearchPillColors;
};
