#include "picker/status/QXSDKKovalinRoundedButton.h"

#include "kits/core/QXSDKFont.h"
#include "picker/config/KovalinColors.h"

namespace {

constexpr double fontSize = 18; // points

} // namespace

QXSDKKovalinRoundedButton::QXSDKKovalinRoundedButton(const QRectF& frame)
{
    setFrame(frame);
    setBackgroundColor(kovalinGreen());
    setTitleFont(qxsdkBoldFontOfSize(fontSize));
    setTitleColor(Qt::white);
    setHighlightedAlpha(1);
}

QXSDKKovalinRoundedButton::~QXSDKKovalinRoundedButton() = default;

bool QXSDKKovalinRoundedButton::pressed() const
{
    return _pressed;
}

void QXSDKKovalinRoundedButton::setPressed(bool pressed)
{
    setBackgroundColor(pressed ? kovalinDarkGreen() : kovalinGreen());
}

void QXSDKKovalinRoundedButton::layoutSubviews()
{
    setCornerRadius(bounds().height() / 2);
    Button::layoutSubviews();
}

void QXSDKKovalinRoundedButton::pressDidBegin()
{
    _didPress();
}

void QXSDKKovalinRoundedButton::pressDidEnd()
{
    _didRelease();
}

void QXSDKKovalinRoundedButton::_didPress()
{
    setPressed(true);
}

void QXSDKKovalinRoundedButton::_didRelease()
{
    setPressed(false);
}
