#pragma once

#include "QXSDKKovalinKit/Export.h"

/// Where a search came from.
enum QXSDKKovalinCategory : int {
    /// No search: the sticker was taken from the popular list.
    QXSDKKovalinCategoryNone = 0,
    /// Text typed in the search bar.
    QXSDKKovalinCategoryTypedText = 1,
    /// A tag tile tapped while search results were showing.
    QXSDKKovalinCategorySuggestedTag = 2,
    /// A tag tile tapped while the popular list was showing.
    QXSDKKovalinCategoryDefaultTag = 3,
    /// A term set by the host.
    QXSDKKovalinCategoryHostTerm = 4,
};

/// The share category number of analytics: 1 without a search, 2 with one, 0 for a number that is no category.
[[nodiscard]] QXSDKKOVALINKIT_EXPORT int QXSDKKovalinCategoryToShareCategory(QXSDKKovalinCategory category);

/// The search category number of analytics: the category's own, 0 for a number that is no category.
[[nodiscard]] QXSDKKOVALINKIT_EXPORT int QXSDKKovalinCategoryToSearchCategory(QXSDKKovalinCategory category);
