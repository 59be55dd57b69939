#pragma once

#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/config/QXSDKKovalinViewProtocol.h"
#include "platform/ui/View.h"

#include <QtCore/QString>

#include <functional>
#include <memory>

/// Stands in place of the stickers when they couldn't be loaded: what went wrong, and a button that tries again. Once
/// that was pressed a spinner turns on it, for the rest of the view's life. Thread and lifetime as of `View`.
class QXSDKKovalinErrorView final : public kovalin::platform::View, public QXSDKKovalinViewProtocol {
    Q_OBJECT

public:
    /// Without a frame. `title` and `message` are shown as they are. `retryBlock`, which may be empty, is called on
    /// the main thread at each press, and may do anything, such as letting go of the view. Takes the colours of the
    /// configuration's theme, or of the default one if that is null.
    QXSDKKovalinErrorView(const QString& title, const QString& message, std::function<void()> retryBlock,
                          const QXSDKKovalinStickerPickerConfigPtr& config);
    ~QXSDKKovalinErrorView() override;

    [[nodiscard]] QXSDKKovalinViewType type() const override;

    /// The block stands in the middle of the whole view, whatever the device covers of it; one that is too high
    /// stands over.
    void layoutSubviews() override;

private:
    struct State;

    void setUpTexts(const QString& title, const QString& message, const QXSDKKovalinStickerPickerTheme& theme);
    void setUpButton(const QXSDKKovalinStickerPickerTheme& theme);
    void retryPressed();

    const std::unique_ptr<State> _view;
};
