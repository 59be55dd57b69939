#include "picker/tags/QXSDKKovalinTagView.h"

#include "kits/core/QXSDKFont.h"
#include "picker/config/QXSDKKovalinStickerPickerTheme.h"
#include "picker/views/KovalinViewHelpers.h"
#include "platform/dispatch/ThreadCheck.h"

#include <QtGui/QFontMetricsF>

using namespace kovalin::platform;

namespace {

// Points.
constexpr double fontSize = 13;
constexpr double textMargins = 20; // of both sides together
constexpr double pillHeight = 24;
/// How far the rim stands out.
constexpr QMarginsF rim(1, 1, 1, 2);
constexpr double rimRadius = 1; // that its corners are rounder by

} // namespace

QXSDKKovalinTagView::QXSDKKovalinTagView()
{
    setFont(qxsdkRegularFontOfSize(fontSize));
    setTextAlignment(TextAlignment::Center);
    _adjustCorners();
}

QXSDKKovalinTagView::~QXSDKKovalinTagView() = default;

void QXSDKKovalinTagView::applyTheme(const QXSDKKovalinStickerPickerTheme& theme)
{
    setTextColor(theme.searchPillTextColor());
    LayerShadow shadow = layerStyle().shadow;
    shadow.color = theme.searchPillShadowColor();
    setShadow(shadow);
}

QColor QXSDKKovalinTagView::backgroundColor() const
{
    const QColor color = Label::backgroundColor();
    return color.isValid() ? color : QColor(Qt::transparent);
}

QSizeF QXSDKKovalinTagView::sizeForText(const QString& text)
{
    assertOnMainThread();
    const QFontMetricsF metrics(qxsdkRegularFontOfSize(fontSize));
    return {metrics.horizontalAdvance(text) + textMargins, pillHeight};
}

QSizeF QXSDKKovalinTagView::sizeThatFits(const QSizeF& /*size*/) const
{
    return sizeForText(text());
}

void QXSDKKovalinTagView::sizeToFit()
{
    setFrame({frame().topLeft(), sizeForText(text())});
    _adjustCorners();
}

bool QXSDKKovalinTagView::isTouched() const
{
    return _isTouched;
}

void QXSDKKovalinTagView::setIsTouched(bool isTouched)
{
    assertOnMainThread();
    if (isTouched != _isTouched) {
        animateViewForPressedState(*this, isTouched);
    }
    _isTouched = isTouched;
}

void QXSDKKovalinTagView::layoutSubviews()
{
    Label::layoutSubviews();
    _adjustCorners();
}

void QXSDKKovalinTagView::_adjustCorners()
{
    LayerStyle style = layerStyle();
    style.cornerRadius = bounds().height() / 2;
    style.shadow.path = bounds().marginsAdded(rim);
    style.shadow.pathCornerRadius = style.cornerRadius + rimRadius;
    setLayerStyle(style);
}
