#pragma once

#include "QXSDKKovalinKit/Export.h"

#include <QtCore/QString>
#include <QtCore/QtGlobal>
#include <QtGui/QImage>

class QXSDKKovalinStickerPickerViewController;

/// Told what the user does in a picker. Called on the main thread; may do anything, such as letting go of the picker.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinStickerPickerViewControllerDelegate {
public:
    QXSDKKovalinStickerPickerViewControllerDelegate() = default;
    virtual ~QXSDKKovalinStickerPickerViewControllerDelegate();
    Q_DISABLE_COPY_MOVE(QXSDKKovalinStickerPickerViewControllerDelegate)

    /// A sticker was chosen: the address of its picture, with the friend's avatar where it shows one, empty for a sticker without
    /// an address, and the picture as it is on screen.
    virtual void
    kovalinStickerPickerViewControllerDidSelectKovalinWithURL(QXSDKKovalinStickerPickerViewController& controller,
                                                              const QString& url, const QImage& image) = 0;

    /// A tag was tapped. Nothing by default.
    virtual void
    kovalinStickerPickerViewControllerDidSelectSearchTag(QXSDKKovalinStickerPickerViewController& controller);

    /// The search field gained the focus or lost it. Nothing by default.
    virtual void kovalinStickerPickerViewControllerSearchFieldFocusDidChangeWithFocus(
        QXSDKKovalinStickerPickerViewController& controller, bool hasFocus);
};
