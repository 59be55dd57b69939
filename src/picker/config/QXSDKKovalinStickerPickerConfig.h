#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "picker/config/QXSDKKovalinStickerPickerTheme.h"

#include <memory>

class QXSDKKovalinStickerPickerConfig;

/// Configurations are shared: who changes one changes it for all that hold it.
using QXSDKKovalinStickerPickerConfigPtr = std::shared_ptr<QXSDKKovalinStickerPickerConfig>;

/// What a host chooses for a picker. Views take it when they are made, and don't watch it.
///
/// One thread at a time, and the main one once a picker has it.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinStickerPickerConfig final {
public:
    /// Search bar and pills, and a theme of the default colours.
    QXSDKKovalinStickerPickerConfig();
    ~QXSDKKovalinStickerPickerConfig();
    Q_DISABLE_COPY_MOVE(QXSDKKovalinStickerPickerConfig)

    /// Whether the search bar is shown; true at first.
    [[nodiscard]] bool showSearchBar() const;
    void setShowSearchBar(bool show);

    /// Whether the row of tags is shown; true at first.
    [[nodiscard]] bool showSearchPills() const;
    void setShowSearchPills(bool show);

    /// The colours of all views; never null. Setting null sets a new theme of the default colours.
    [[nodiscard]] QXSDKKovalinStickerPickerThemePtr theme() const;
    void setTheme(const QXSDKKovalinStickerPickerThemePtr& theme);

private:
    struct Choices;

    const std::unique_ptr<Choices> _choices;
};
