#pragma once

#include "platform/ui/Button.h"

#include <QtCore/QRectF>

/// The green button of the full-size views, darker while it is pressed. Thread and lifetime as of `View`.
class QXSDKKovalinRoundedButton final : public kovalin::platform::Button {
    Q_OBJECT

public:
    explicit QXSDKKovalinRoundedButton(const QRectF& frame = {});
    ~QXSDKKovalinRoundedButton() override;

    /// Always false: `setPressed` is for the looks alone.
    [[nodiscard]] bool pressed() const;
    /// Shows it in the green of what is pressed, or of what isn't. Each press does the same, and each release undoes
    /// it.
    void setPressed(bool pressed);

    void layoutSubviews() override;

protected:
    void pressDidBegin() override;
    void pressDidEnd() override;

private:
    void _didPress();
    void _didRelease();

    const bool _pressed = false;
};
