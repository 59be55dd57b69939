#pragma once

#include "kits/login/QXSDKLoginStatusObserver.h"
#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/config/QXSDKKovalinViewProtocol.h"
#include "platform/ui/Label.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <memory>
#include <optional>

/// The text of the no permission view, with what is to be turned on in bold. Absent where the texts have no place for
/// that.
[[nodiscard]] std::optional<QList<kovalin::platform::TextRun>> QXSDKKovalinLabelText();
/// The same for any text: `action`, in bold, takes the place of the first "%@" of `format`.
[[nodiscard]] std::optional<QList<kovalin::platform::TextRun>> QXSDKKovalinLabelText(const QString& format,
                                                                                     const QString& action);

/// Stands in place of the stickers while the account doesn't let the host see its avatar: a button that starts the
/// login again, which asks for that. While any login is under way the button is disabled and a spinner turns on it.
/// Thread and lifetime as of `View`.
class QXSDKKovalinNoPermissionView final : public kovalin::platform::View,
                                           public QXSDKKovalinViewProtocol,
                                           public QXSDKLoginStatusObserver {
    Q_OBJECT

public:
    /// Told of logins from here on. Takes the colours of the configuration's theme, or of the default one if that is
    /// null.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinNoPermissionView>
    create(const QRectF& frame, const QXSDKKovalinStickerPickerConfigPtr& config);
    ~QXSDKKovalinNoPermissionView() override;

    [[nodiscard]] QXSDKKovalinViewType type() const override;

    void layoutSubviews() override;

    // From the login.

    void qxsdkLoginLinkDidFail() override;

private:
    struct State;

    QXSDKKovalinNoPermissionView(const QRectF& frame, const QXSDKKovalinStickerPickerConfigPtr& config);

    void _didTapButton();
    void _loginDidStart();
    void showLogin(bool isUnderWay);

    const std::unique_ptr<State> _view;
};
