#pragma once

#include "platform/ui/View.h"

#include <QtCore/QVariantAnimation>
#include <QtGui/QColor>
#include <QtGui/QImage>

namespace kovalin::platform {

/// A small wheel of spokes that turns while something is waited for; a white one at first. Thread and lifetime as of
/// `View`.
///
/// It is drawn standing or turning, but draws nothing anew while it can't be seen. With reduced motion it stands, as
/// it is when it begins. Whoever stops it hides it, if that is wanted.
class ActivityIndicator final : public View {
    Q_OBJECT

public:
    /// In its own size, 20 × 20 points.
    ActivityIndicator();
    ~ActivityIndicator() override;

    [[nodiscard]] QColor color() const;
    void setColor(const QColor& color);

    void startAnimating();
    void stopAnimating();
    /// Whether it was started, also where it can't be seen.
    [[nodiscard]] bool isAnimating() const;

    /// Its own size, whatever `size` is.
    [[nodiscard]] QSizeF sizeThatFits(const QSizeF& size) const override;

protected:
    void didMoveToWindow() override;
    void visibilityDidChange() override;
    void devicePixelRatioDidChange() override;
    QSGNode* updateContentNode(QSGNode* old) override;

private:
    void turnWhileSeen();
    void show(int step);
    void draw();

    QColor _color = Qt::white;
    bool _isAnimating = false;
    QVariantAnimation _turn;
    QMetaObject::Connection _windowShown;
    int _step = 0;
    /// As the wheel stands at `_step`, for the window's pixel ratio.
    QImage _picture;
};

} // namespace kovalin::platform
