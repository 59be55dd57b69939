#pragma once

#include "picker/tags/QXSDKKovalinTagSelectorView.h"
#include "picker/tags/QXSDKKovalinTagView.h"
#include "picker/tags/QXSDKKovalinTagViewCell.h"
#include "platform/ui/CollectionView.h"
#include "platform/ui/Label.h"
#include "support/PartOf.h"

#include <QtCore/QStringList>
#include <QtGui/QColor>

#include <memory>

// The parts of the views of tags, by their order.

namespace kovalin::test {

[[nodiscard]] inline QXSDKTagTilePtr tile(const QString& text, const QColor& color = Qt::red)
{
    return std::make_shared<const QXSDKTagTile>(text, color);
}

[[nodiscard]] inline QXSDKKovalinTagSelectorView::List tiles(const QStringList& texts)
{
    QXSDKTagTileList made;
    for (const QString& text : texts) {
        made.append(tile(text));
    }
    return std::make_shared<const QXSDKTagTileList>(made);
}

/// Enough for a strip that scrolls.
[[nodiscard]] inline QXSDKKovalinTagSelectorView::List manyTiles(const QString& prefix, int count = 30)
{
    QStringList texts;
    for (int i = 0; i < count; ++i) {
        texts.append(prefix + QString::number(i));
    }
    return tiles(texts);
}

[[nodiscard]] inline std::shared_ptr<platform::Label> noResultsOf(const QXSDKKovalinTagSelectorView& strip)
{
    return partOf<platform::Label>(strip, 0);
}

[[nodiscard]] inline std::shared_ptr<platform::CollectionView> pillsOf(const QXSDKKovalinTagSelectorView& strip)
{
    return partOf<platform::CollectionView>(strip, 1);
}

[[nodiscard]] inline std::shared_ptr<QXSDKKovalinTagViewCell> cellOf(const QXSDKKovalinTagSelectorView& strip,
                                                                     qsizetype item)
{
    return std::dynamic_pointer_cast<QXSDKKovalinTagViewCell>(pillsOf(strip)->cellForItemAtIndexPath(item));
}

[[nodiscard]] inline std::shared_ptr<QXSDKKovalinTagView> pillOf(const QXSDKKovalinTagViewCell& cell)
{
    return partOf<QXSDKKovalinTagView>(cell, 0);
}

[[nodiscard]] inline QStringList textsOf(const QXSDKKovalinTagSelectorView& strip)
{
    QStringList texts;
    for (const auto& each : *strip.tagTiles()) {
        texts.append(each->text());
    }
    return texts;
}

/// Of the pill's middle in the strip.
[[nodiscard]] inline QPointF middleOfPill(const QXSDKKovalinTagSelectorView& strip, qsizetype item)
{
    const auto pills = pillsOf(strip);
    return pills->frameOfItem(item).center() - pills->contentOffset();
}

} // namespace kovalin::test
