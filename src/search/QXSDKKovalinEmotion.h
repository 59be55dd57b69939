#pragma once

#include <QtCore/QtGlobal>

/// The mood of a pack and, through it, of the tags that occur in the pack.
enum QXSDKKovalinEmotion : quint32 {
    QXSDKKovalinEmotionGreeting = 0,
    QXSDKKovalinEmotionAffection = 1,
    QXSDKKovalinEmotionPositive = 2,
    QXSDKKovalinEmotionNegative = 3,
    QXSDKKovalinEmotionOccasions = 4,
    /// What a tag without any emotion answers.
    QXSDKKovalinEmotionUnknown = 5,
};
