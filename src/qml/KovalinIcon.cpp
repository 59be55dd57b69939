#include "qml/KovalinIcon.h"

#include "picker/icon/QXSDKKovalinIconView.h"

#include <QtQml/QQmlEngine>

#include <utility>

KovalinIcon::KovalinIcon(QQuickItem* parent)
    : QQuickItem(parent)
{
}

KovalinIcon::~KovalinIcon()
{
    if (_picker) {
        _picker->removeIcon(_view);
    }
}

void KovalinIcon::setPicker(KovalinStickerPicker* picker)
{
    if (picker == _picker) {
        return;
    }
    if (_picker) {
        _picker->removeIcon(_view);
    }
    _picker = picker;
    if (_picker) {
        _picker->attachIcon(_view);
    }
    Q_EMIT pickerChanged();
}

bool KovalinIcon::isLinked() const
{
    return _view && _view->linked();
}

void KovalinIcon::componentComplete()
{
    QQuickItem::componentComplete();
    _view = QXSDKKovalinIconView::create();
    // QML code that comes across the item must not take it for its own.
    QQmlEngine::setObjectOwnership(_view.get(), QQmlEngine::CppOwnership);
    _view->setZ(belowTheHostsChildren);
    _view->setParentItem(this);
    _view->setSize(size());
    if (_picker) {
        _picker->attachIcon(_view);
    }
    // After the view's own observers, which are told in the order in which they came.
    _login = std::make_unique<LoginWatch>([this] { tellLinked(); });
    tellLinked();
}

void KovalinIcon::tellLinked()
{
    const bool isNow = isLinked();
    if (std::exchange(_toldLinked, isNow) != isNow) {
        Q_EMIT linkedChanged();
    }
}

void KovalinIcon::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (_view) {
        _view->setSize(newGeometry.size());
    }
}
