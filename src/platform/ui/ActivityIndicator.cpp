#include "platform/ui/ActivityIndicator.h"

#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Color.h"
#include "platform/ui/Animation.h"
#include "platform/ui/ImageNode.h"
#include "platform/ui/WindowVisibility.h"

#include <QtGui/QPainter>
#include <QtQuick/QQuickWindow>

#include <cmath>
#include <utility>

namespace kovalin::platform {

namespace {

constexpr int spokes = 12;
constexpr int millisecondsOfATurn = 1000;

// Points.
constexpr double wheelSize = 20;
constexpr double spokeStart = 5; // from the hub
constexpr double spokeEnd = 9;
constexpr double spokeWidth = 2;

/// Of the spoke that is the last in the turn.
constexpr double leastOpacity = 0.2;

/// The wheel with spoke number `step` in front: the ones behind it fade out.
QImage wheel(int step, const QColor& color, double pixelRatio)
{
    const int pixels = static_cast<int>(std::ceil(wheelSize * pixelRatio));
    QImage picture(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    picture.setDevicePixelRatio(pixelRatio);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(wheelSize / 2, wheelSize / 2);
    for (int spoke = 0; spoke < spokes; ++spoke) {
        const int behind = (step - spoke + spokes) % spokes;
        painter.setOpacity(1 - (1 - leastOpacity) * behind / (spokes - 1));
        painter.setPen(QPen(color, spokeWidth, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0, -spokeStart), QPointF(0, -spokeEnd));
        painter.rotate(360.0 / spokes);
    }
    return picture;
}

} // namespace

ActivityIndicator::ActivityIndicator()
{
    _turn.setStartValue(0);
    _turn.setEndValue(spokes);
    _turn.setDuration(millisecondsOfATurn);
    _turn.setLoopCount(-1);
    connect(&_turn, &QVariantAnimation::valueChanged, this, [this](const QVariant& step) { show(step.toInt()); });
    setDrawsContent(true);
    setAccessibilityRole(QAccessible::Animation);
    sizeToFit();
    draw();
}

ActivityIndicator::~ActivityIndicator()
{
    // A window may tell of itself while this ends.
    disconnect(_windowShown);
}

QColor ActivityIndicator::color() const
{
    return _color;
}

void ActivityIndicator::setColor(const QColor& color)
{
    assertOnMainThread();
    if (!colorsEqual(color, _color)) {
        _color = color;
        draw();
    }
}

void ActivityIndicator::startAnimating()
{
    assertOnMainThread();
    _isAnimating = true;
    turnWhileSeen();
}

void ActivityIndicator::stopAnimating()
{
    assertOnMainThread();
    _isAnimating = false;
    turnWhileSeen();
}

bool ActivityIndicator::isAnimating() const
{
    return _isAnimating;
}

QSizeF ActivityIndicator::sizeThatFits(const QSizeF& /*size*/) const
{
    return {wheelSize, wheelSize};
}

void ActivityIndicator::turnWhileSeen()
{
    const bool isSeen = isVisible() && isOnScreen(window());
    const bool turns = _isAnimating && isSeen && !isMotionReduced();
    if (turns == (_turn.state() == QAbstractAnimation::Running)) {
        return;
    }
    if (turns) {
        _turn.start();
    } else {
        _turn.stop();
        show(0);
    }
}

void ActivityIndicator::didMoveToWindow()
{
    disconnect(std::exchange(_windowShown, {}));
    if (QQuickWindow* const shownIn = window()) {
        // A window that is hidden tells its items nothing.
        _windowShown = connect(shownIn, &QWindow::visibilityChanged, this, [this] { turnWhileSeen(); });
        draw();
    }
    turnWhileSeen();
}

void ActivityIndicator::visibilityDidChange()
{
    turnWhileSeen();
}

void ActivityIndicator::devicePixelRatioDidChange()
{
    draw();
}

void ActivityIndicator::show(int step)
{
    // At its end a turn is as at the beginning of the next one.
    if (std::exchange(_step, step % spokes) != step % spokes) {
        draw();
    }
}

void ActivityIndicator::draw()
{
    _picture = wheel(_step, _color, devicePixelRatio());
    update();
}

QSGNode* ActivityIndicator::updateContentNode(QSGNode* old)
{
    auto* const node = old ? static_cast<PictureNode*>(old) : new PictureNode;
    node->update(*window(), _picture, QRectF(QPointF(), _picture.deviceIndependentSize()), 1);
    return node;
}

} // namespace kovalin::platform
