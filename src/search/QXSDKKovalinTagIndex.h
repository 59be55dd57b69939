#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "search/KovalinPack.h"
#include "search/QXSDKKovalinEmotion.h"

#include <QtCore/QString>

/// What is known about a tag besides its stickers; gives tag tiles their colour. Any thread.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinTagIndex {
public:
    virtual ~QXSDKKovalinTagIndex();

    /// The emotion of the tag, QXSDKKovalinEmotionUnknown if it has none.
    [[nodiscard]] virtual QXSDKKovalinEmotion emotionForTag(const QString& tag) const = 0;

    /// The visible pack whose title equals the tag exactly; null if there is none.
    [[nodiscard]] virtual KovalinPackPtr packForTag(const QString& tag) const = 0;
};
