#pragma once

#include <QtCore/QtGlobal>

/// What a search from outside does with what the content view shows.
enum QXSDKKovalinSearchMode : quint64 {
    /// The term goes into the search bar; results take the place of stickers and tags.
    QXSDKKovalinSearchModeReplace = 0,
    /// The search bar is left empty; results come first, the popular stickers behind them, and the tags stay.
    QXSDKKovalinSearchModeBlend = 1,
};
