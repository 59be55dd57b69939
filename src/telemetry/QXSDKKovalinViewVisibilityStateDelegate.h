#pragma once

#include "search/KovalinSticker.h"

#include <QtCore/QtGlobal>

class QXSDKKovalinStickerPickerConfig;

/// Told when a picker comes into sight. Called on the main thread.
class QXSDKKovalinViewVisibilityStateDelegate {
public:
    virtual ~QXSDKKovalinViewVisibilityStateDelegate();

    /// A person sees a view of the picker, the first one since the session began or was resumed; at most once until its
    /// end. `viewType` is the number of a QXSDKKovalinViewType. `previewIconSticker` is what the icon beside the host's
    /// text field shows; null without one.
    virtual void firstViewBecameVisible(qint32 viewType, const KovalinStickerPtr& previewIconSticker,
                                        const QXSDKKovalinStickerPickerConfig& config) = 0;
};
