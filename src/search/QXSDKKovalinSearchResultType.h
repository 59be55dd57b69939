#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "search/KovalinSticker.h"

#include <QtCore/QList>

#include <functional>

/// A kind of sticker that a search may return.
enum QXSDKKovalinSearchResultType : int {
    /// One-person stickers.
    QXSDKKovalinSearchResultTypeSolovalin = 0,
    /// Two-person stickers.
    QXSDKKovalinSearchResultTypeFriendvalin = 1,
};

/// The kinds that a request wants: only membership counts, not order or repeats. An empty list wants nothing.
using QXSDKKovalinSearchResultTypes = QList<QXSDKKovalinSearchResultType>;

/// Whether the list holds both kinds. Any thread, like all functions here.
[[nodiscard]] QXSDKKOVALINKIT_EXPORT bool
QXSDKKovalinSearchResultTypeHasAll(const QXSDKKovalinSearchResultTypes& resultTypes);

/// Whether the list holds two-person stickers.
[[nodiscard]] QXSDKKOVALINKIT_EXPORT bool
QXSDKKovalinSearchResultTypeHasFriendvalin(const QXSDKKovalinSearchResultTypes& resultTypes);

/// A filter that keeps the stickers of the listed kinds. It holds no reference to the list.
[[nodiscard]] QXSDKKOVALINKIT_EXPORT std::function<bool(const KovalinSticker&)>
QXSDKKovalinSearchResultTypeToPredicate(const QXSDKKovalinSearchResultTypes& resultTypes);
