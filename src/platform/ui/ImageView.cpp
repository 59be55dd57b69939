#include "platform/ui/ImageView.h"

#include "platform/dispatch/GlobalQueue.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Color.h"
#include "platform/ui/ImageNode.h"

#include <QtQuick/QQuickWindow>

#include <optional>
#include <utility>

namespace kovalin::platform {

namespace {

/// What a picture was made for.
struct Preparation {
    qint64 source = 0;
    QSize pixels;
    std::optional<QColor> tint;

    friend bool operator==(const Preparation&, const Preparation&) = default;
};

/// A picture that can be drawn, and the size in points of the one that it was made from.
struct Picture {
    QImage image;
    QSizeF naturalSize;
};

} // namespace

struct ImageView::State {
    QImage image;
    bool isTemplate = false;
    QColor tint = Qt::black;
    ContentMode mode = ContentMode::Fill;

    Picture current;
    Preparation currentIsFor;
    bool isPreparing = false;

    Picture former;
    double dissolve = 1;

    [[nodiscard]] std::optional<QColor> tintInUse() const { return isTemplate ? std::optional(tint) : std::nullopt; }
};

ImageView::ImageView()
    : _picture(std::make_unique<State>())
{
    setDrawsContent(true);
    setAccessibilityRole(QAccessible::Graphic);
}

ImageView::~ImageView() = default;

QImage ImageView::image() const
{
    return _picture->image;
}

void ImageView::setImage(const QImage& image, bool isTemplate)
{
    assertOnMainThread();
    if (image.cacheKey() == _picture->image.cacheKey() && isTemplate == _picture->isTemplate) {
        return;
    }
    _picture->image = image;
    _picture->isTemplate = isTemplate;
    if (image.isNull()) {
        _picture->current = {};
        _picture->currentIsFor = {};
        update();
    }
    setNeedsLayout();
}

bool ImageView::isImageReady() const
{
    return !_picture->image.isNull() && _picture->currentIsFor.source == _picture->image.cacheKey();
}

QColor ImageView::tintColor() const
{
    return _picture->tint;
}

void ImageView::setTintColor(const QColor& color)
{
    assertOnMainThread();
    if (!colorsEqual(color, _picture->tint)) {
        _picture->tint = color;
        setNeedsLayout();
    }
}

ContentMode ImageView::contentMode() const
{
    return _picture->mode;
}

void ImageView::setContentMode(ContentMode mode)
{
    assertOnMainThread();
    if (mode != _picture->mode) {
        _picture->mode = mode;
        update();
        setNeedsLayout();
    }
}

QSizeF ImageView::sizeThatFits(const QSizeF& /*size*/) const
{
    return naturalSize(_picture->image);
}

void ImageView::layoutSubviews()
{
    prepare();
}

void ImageView::didMoveToWindow()
{
    setNeedsLayout();
}

void ImageView::devicePixelRatioDidChange()
{
    setNeedsLayout();
}

void ImageView::prepare()
{
    State& state = *_picture;
    if (state.image.isNull() || !window() || state.isPreparing) {
        return;
    }
    const double ratio = devicePixelRatio();
    const QSizeF points = contentRect(naturalSize(state.image), bounds(), state.mode, ratio).size();
    const Preparation wanted{state.image.cacheKey(), (points * ratio).toSize(), state.tintInUse()};
    if (wanted == state.currentIsFor || wanted.pixels.isEmpty()) {
        return;
    }
    if (!wanted.tint && wanted.pixels == state.image.size()) {
        state.currentIsFor = wanted;
        state.current = {state.image, naturalSize(state.image)};
        update();
        return;
    }
    state.isPreparing = true;
    dispatchGlobal([view = weak_from_this(), image = state.image, wanted] {
        QImage prepared = preparedImage(image, wanted.pixels, wanted.tint);
        dispatchMain([view, wanted, size = naturalSize(image), prepared = std::move(prepared)] {
            const auto held = std::static_pointer_cast<ImageView>(view.lock());
            if (!held) {
                return;
            }
            State& owner = *held->_picture;
            owner.isPreparing = false;
            // What was made of the right picture is worth showing, even if its size isn't wanted any more.
            if (wanted.source == owner.image.cacheKey()) {
                owner.current = {prepared, size};
                owner.currentIsFor = wanted;
                held->update();
            }
            held->setNeedsLayout();
        });
    });
}

bool ImageView::keepContentForDissolve()
{
    _picture->former = _picture->current;
    return true;
}

void ImageView::presentDissolve(double progress)
{
    _picture->dissolve = progress;
    if (progress >= 1) {
        _picture->former = {};
    }
    update();
}

QSGNode* ImageView::updateContentNode(QSGNode* old)
{
    auto* const node = old ? static_cast<ImageNode*>(old) : new ImageNode;
    const State& state = *_picture;
    const QRectF area(QPointF(), size());
    const double ratio = window()->effectiveDevicePixelRatio();
    const auto rectOf = [&](const Picture& picture) {
        return contentRect(picture.naturalSize, area, state.mode, ratio);
    };
    node->former().update(*window(), state.former.image, rectOf(state.former), 1 - state.dissolve);
    node->current().update(*window(), state.current.image, rectOf(state.current), state.dissolve);
    return node;
}

} // namespace kovalin::platform
