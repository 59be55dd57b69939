#pragma once

#include "qml/KovalinStickerPicker.h"
#include "qml/LoginWatch.h"

#include <QtCore/QPointer>
#include <QtQuick/QQuickItem>

#include <QtQml/qqmlregistration.h>

#include <memory>

class QXSDKKovalinIconView;

/// The avatar icon to stand beside a host's text field, for QML. With a picker it shows the sticker that the picker's `searchTerm`
/// matches. It takes no taps: a host's own children lie above it.
///
///     KovalinIcon { picker: stickers; MouseArea { anchors.fill: parent; onClicked: panel.open() } }
///
/// Main thread only. The item and its picker may go in any order.
class KovalinIcon : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(KovalinStickerPicker* picker READ picker WRITE setPicker NOTIFY pickerChanged)
    /// Whether an account is linked, as far as the icon was told.
    Q_PROPERTY(bool linked READ isLinked NOTIFY linkedChanged)

public:
    explicit KovalinIcon(QQuickItem* parent = nullptr);
    ~KovalinIcon() override;
    Q_DISABLE_COPY_MOVE(KovalinIcon)

    [[nodiscard]] KovalinStickerPicker* picker() const { return _picker; }
    void setPicker(KovalinStickerPicker* picker);
    [[nodiscard]] bool isLinked() const;

Q_SIGNALS:
    void pickerChanged();
    void linkedChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    void tellLinked();

    QPointer<KovalinStickerPicker> _picker;
    /// Null until the item is complete.
    std::shared_ptr<QXSDKKovalinIconView> _view;
    bool _toldLinked = false;
    std::unique_ptr<LoginWatch> _login;
};
