#pragma once

#include "kits/login/ui/QXSDKLoginButton.h"
#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/config/QXSDKKovalinViewProtocol.h"
#include "platform/ui/View.h"

#include <memory>

/// Told of taps on a login view's button. Called on the main thread; may do anything, such as letting go of the view.
class QXSDKKovalinLoginViewDelegate {
public:
    QXSDKKovalinLoginViewDelegate() = default;
    virtual ~QXSDKKovalinLoginViewDelegate();
    Q_DISABLE_COPY_MOVE(QXSDKKovalinLoginViewDelegate)

    virtual void loginViewDidTapLoginButton() = 0;
};

/// Stands in place of the stickers while no account is linked: a button that links one. Thread and lifetime as of
/// `View`.
class QXSDKKovalinLoginView final : public kovalin::platform::View,
                                    public QXSDKKovalinViewProtocol,
                                    public QXSDKLoginButtonDelegate {
    Q_OBJECT

public:
    /// Takes the colours of the configuration's theme, or of the default one if that is null.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinLoginView>
    create(const QRectF& frame, const QXSDKKovalinStickerPickerConfigPtr& config);
    ~QXSDKKovalinLoginView() override;

    /// Held weakly.
    void setDelegate(const std::weak_ptr<QXSDKKovalinLoginViewDelegate>& delegate);

    [[nodiscard]] QXSDKKovalinViewType type() const override;

    void layoutSubviews() override;

    // From the login button.

    void loginButtonDidTap() override;

protected:
    void didMoveToWindow() override;
    void devicePixelRatioDidChange() override;

private:
    struct State;

    QXSDKKovalinLoginView(const QRectF& frame, const QXSDKKovalinStickerPickerConfigPtr& config);

    const std::unique_ptr<State> _view;
};
