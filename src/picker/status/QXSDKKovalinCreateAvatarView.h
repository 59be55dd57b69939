#pragma once

#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/config/QXSDKKovalinViewProtocol.h"
#include "platform/ui/View.h"

#include <memory>

/// Told of taps on a create avatar view's button. Called on the main thread; may do anything, such as letting go of
/// the view.
class QXSDKKovalinCreateAvatarViewDelegate {
public:
    QXSDKKovalinCreateAvatarViewDelegate() = default;
    virtual ~QXSDKKovalinCreateAvatarViewDelegate();
    Q_DISABLE_COPY_MOVE(QXSDKKovalinCreateAvatarViewDelegate)

    /// Before anything is opened.
    virtual void createAvatarViewDidTapCreateAvatarButton() = 0;
};

/// Stands in place of the stickers while the account has no avatar: a button that opens the avatar app, or, where the
/// opener of `QXSDKURLOpener` doesn't find that, its page in the store that the client setup names. Thread and
/// lifetime as of `View`.
class QXSDKKovalinCreateAvatarView final : public kovalin::platform::View, public QXSDKKovalinViewProtocol {
    Q_OBJECT

public:
    /// Takes the colours of the configuration's theme, or of the default one if that is null.
    QXSDKKovalinCreateAvatarView(const QRectF& frame, const QXSDKKovalinStickerPickerConfigPtr& config);
    ~QXSDKKovalinCreateAvatarView() override;

    /// Held weakly.
    void setDelegate(const std::weak_ptr<QXSDKKovalinCreateAvatarViewDelegate>& delegate);

    [[nodiscard]] QXSDKKovalinViewType type() const override;

    void layoutSubviews() override;

protected:
    void didMoveToWindow() override;
    void devicePixelRatioDidChange() override;

private:
    struct State;

    void createAvatarPressed();
    [[nodiscard]] static bool _isKovalinInstalled();

    const std::unique_ptr<State> _view;
};
