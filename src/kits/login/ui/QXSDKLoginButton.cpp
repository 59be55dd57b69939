#include "kits/login/ui/QXSDKLoginButton.h"

#include "kits/core/QXSDKFont.h"
#include "kits/core/QXSDKTopViewController.h"
#include "kits/login/ui/LoginButtonTitle.h"
#include "platform/dispatch/ThreadCheck.h"

#include <algorithm>
#include <utility>

using namespace kovalin::platform;

namespace {

// Points.
constexpr double fontSize = 18;
constexpr double buttonHeight = 48;
constexpr double minButtonWidth = 200;
constexpr QMarginsF titleInsets(24, 0, 24, 0);

QColor backgroundGreen()
{
    return QColor::fromHsvF(0.4305F, 0.72F, 0.79F);
}

} // namespace

QXSDKLoginButtonDelegate::~QXSDKLoginButtonDelegate() = default;

QXSDKLoginButton::QXSDKLoginButton(QXSDKLoginClient::LoginCompletion completion, const QString& language)
    : _completion(std::move(completion))
{
    setBackgroundColor(backgroundGreen());
    setContentInsets(titleInsets);
    setTitle(kovalin::kits::loginButtonTitle(language));
    setTitleFont(qxsdkBoldFontOfSize(fontSize));
    setTitleColor(Qt::white);
    setOnTouchUpInside([this] { didTap(); });
}

QXSDKLoginButton::~QXSDKLoginButton() = default;

void QXSDKLoginButton::setDelegate(const std::weak_ptr<QXSDKLoginButtonDelegate>& delegate)
{
    assertOnMainThread();
    _delegate = delegate;
}

void QXSDKLoginButton::didTap()
{
    const auto self = weak_from_this().lock();
    if (const auto delegate = _delegate.lock()) {
        delegate->loginButtonDidTap();
    }
    QXSDKLoginClient::shared()->loginFromViewController(topViewController(), _completion);
}

QSizeF QXSDKLoginButton::sizeThatFits(const QSizeF& size) const
{
    const QSizeF content = Button::sizeThatFits(size);
    return QSizeF(std::max(content.width(), minButtonWidth), buttonHeight).boundedTo(size);
}

void QXSDKLoginButton::layoutSubviews()
{
    setCornerRadius(bounds().height() / 2);
    Button::layoutSubviews();
}
