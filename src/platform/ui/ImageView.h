#pragma once

#include "platform/ui/Images.h"
#include "platform/ui/View.h"

#include <QtGui/QColor>
#include <QtGui/QImage>

namespace kovalin::platform {

/// Shows a picture, scaled to the view and its window's pixel ratio. Thread and lifetime as of `View`.
///
/// Scaling and colouring are done on the global queue. Until they are, what was shown before stays on show; it is taken away at
/// once by a null picture. A picture that is in no window, or hidden, isn't prepared. `transition` dissolves pictures.
class ImageView : public View {
    Q_OBJECT

public:
    ImageView();
    ~ImageView() override;

    /// Null at first, and for nothing to show.
    [[nodiscard]] QImage image() const;
    /// A template's own colours don't count: it is shown in the tint colour.
    void setImage(const QImage& image, bool isTemplate = false);
    /// Whether the next frame shows that picture, in whichever size: false while it is being prepared, and without one.
    [[nodiscard]] bool isImageReady() const;
    /// For templates. Black at first.
    [[nodiscard]] QColor tintColor() const;
    void setTintColor(const QColor& color);
    /// Fill at first.
    [[nodiscard]] ContentMode contentMode() const;
    void setContentMode(ContentMode mode);

    /// The picture's own size in points, whatever `size` is; empty without one.
    [[nodiscard]] QSizeF sizeThatFits(const QSizeF& size) const override;

    void layoutSubviews() override;

protected:
    void didMoveToWindow() override;
    void devicePixelRatioDidChange() override;
    QSGNode* updateContentNode(QSGNode* old) override;
    bool keepContentForDissolve() override;
    void presentDissolve(double progress) override;

private:
    struct State;

    void prepare();

    const std::unique_ptr<State> _picture;
};

} // namespace kovalin::platform
