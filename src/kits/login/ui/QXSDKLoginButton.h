#pragma once

#include "kits/login/QXSDKLoginClient.h"
#include "platform/ui/Button.h"

#include <QtCore/QString>

#include <memory>

/// Told of taps on a login button. Called on the main thread; may do anything, such as letting go of the button.
class QXSDKLoginButtonDelegate {
public:
    QXSDKLoginButtonDelegate() = default;
    virtual ~QXSDKLoginButtonDelegate();
    Q_DISABLE_COPY_MOVE(QXSDKLoginButtonDelegate)

    /// Before the login begins.
    virtual void loginButtonDidTap() = 0;
};

/// A button that links the user's account: a tap starts the login of the client that is installed then. What becomes
/// of it is told to the client's observers. Thread and lifetime as of `View`; a login that it started goes on without
/// it.
class QXSDKLoginButton final : public kovalin::platform::Button {
    Q_OBJECT

public:
    /// `completion`, which may be empty, is called on the main thread at the end of each login that a tap started.
    /// `language` ("de", "zh-Hant") is what the button is labelled in; English stands for those that there is no text
    /// in.
    explicit QXSDKLoginButton(QXSDKLoginClient::LoginCompletion completion = {},
                              const QString& language = QStringLiteral("en"));
    ~QXSDKLoginButton() override;

    /// Held weakly.
    void setDelegate(const std::weak_ptr<QXSDKLoginButtonDelegate>& delegate);

    /// As wide as its title needs, and no narrower than 200 points; 48 points high.
    [[nodiscard]] QSizeF sizeThatFits(const QSizeF& size) const override;
    void layoutSubviews() override;

private:
    void didTap();

    const QXSDKLoginClient::LoginCompletion _completion;
    std::weak_ptr<QXSDKLoginButtonDelegate> _delegate;
};
