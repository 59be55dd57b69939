#pragma once

#include "picker/content/QXSDKKovalinStickerPickerContentView.h"
#include "picker/tags/QXSDKKovalinTagHeaderView.h"
#include "picker/tags/TagViews.h"
#include "support/PartOf.h"

#include <QtCore/QStringList>

#include <memory>

// The parts of a content view, by their order.

namespace kovalin::test {

/// Of a content view, or of the page of a tag.
[[nodiscard]] inline std::shared_ptr<platform::CollectionView> gridOf(const platform::View& view)
{
    return partOf<platform::CollectionView>(view, 0);
}

[[nodiscard]] inline std::shared_ptr<QXSDKKovalinTagSelectorView>
stripOf(const QXSDKKovalinStickerPickerContentView& view)
{
    return partOf<QXSDKKovalinTagSelectorView>(view, 1);
}

[[nodiscard]] inline std::shared_ptr<KovalinSearchBarView> barOf(const QXSDKKovalinStickerPickerContentView& view)
{
    return partOf<KovalinSearchBarView>(view, 2);
}

/// Null while it isn't on screen.
[[nodiscard]] inline std::shared_ptr<QXSDKKovalinTagResultsView>
resultsOf(const QXSDKKovalinStickerPickerContentView& view)
{
    return partOf<QXSDKKovalinTagResultsView>(view, 3);
}

[[nodiscard]] inline std::shared_ptr<QXSDKKovalinTagHeaderView> headerOf(const QXSDKKovalinTagResultsView& page)
{
    return partOf<QXSDKKovalinTagHeaderView>(page, 1);
}

[[nodiscard]] inline QStringList comicIdsOf(const KovalinStickerList& stickers)
{
    QStringList ids;
    for (const auto& each : stickers) {
        ids.append(each->comicId().value_or(QStringLiteral("-")));
    }
    return ids;
}

} // namespace kovalin::test
