#include "picker/tags/QXSDKKovalinTagViewCell.h"

#include "picker/tags/QXSDKKovalinTagView.h"

using namespace kovalin::platform;

QXSDKKovalinTagViewCell::QXSDKKovalinTagViewCell()
    : _tagView(makeView<QXSDKKovalinTagView>())
{
    addSubview(_tagView);
}

QXSDKKovalinTagViewCell::~QXSDKKovalinTagViewCell() = default;

QSizeF QXSDKKovalinTagViewCell::sizeForText(const QString& text)
{
    return QXSDKKovalinTagView::sizeForText(text);
}

void QXSDKKovalinTagViewCell::applyTheme(const QXSDKKovalinStickerPickerTheme& theme)
{
    _tagView->applyTheme(theme);
}

QString QXSDKKovalinTagViewCell::text() const
{
    return _tagView->text();
}

void QXSDKKovalinTagViewCell::setText(const QString& text)
{
    _tagView->setText(text);
}

QColor QXSDKKovalinTagViewCell::color() const
{
    return _tagView->backgroundColor();
}

void QXSDKKovalinTagViewCell::setColor(const QColor& color)
{
    _tagView->setBackgroundColor(color);
}

void QXSDKKovalinTagViewCell::prepareForReuse()
{
    CollectionViewCell::prepareForReuse();
    _tagView->setIsTouched(false);
}

void QXSDKKovalinTagViewCell::layoutSubviews()
{
    _tagView->setFrame(bounds());
}

void QXSDKKovalinTagViewCell::mousePressEvent(QMouseEvent* event)
{
    CollectionViewCell::mousePressEvent(event);
    _tagView->setIsTouched(true);
}

void QXSDKKovalinTagViewCell::mouseReleaseEvent(QMouseEvent* event)
{
    // Who is told of the tap may let the strip go.
    const auto self = weak_from_this().lock();
    CollectionViewCell::mouseReleaseEvent(event);
    _tagView->setIsTouched(false);
}

void QXSDKKovalinTagViewCell::mouseUngrabEvent()
{
    CollectionViewCell::mouseUngrabEvent();
    _tagView->setIsTouched(false);
}
