#pragma once

#include "search/KovalinSticker.h"
#include "search/QXSDKKovalinTagRank.h"

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace kovalin::cli {

struct TagScore {
    QXSDKKovalinTagRank rank;
    qint64 score; // the lower the better
};

struct SearchAnswer {
    QString query;
    KovalinStickerList stickers;
    QStringList tags;
    /// One for each tag, absent for a tag that the prefix engine doesn't find; or empty.
    QList<std::optional<TagScore>> scores;
};

// Both write one answer to standard output and flush it.

/// One JSON object on one line, with "explain" beside "tags" when that is wanted; a tag without a score has null for it.
void writeAnswerAsJson(const SearchAnswer& answer, bool explain);

/// A table for people, with at most `limit` tags and stickers; 0 is no limit.
void writeAnswerAsTable(const SearchAnswer& answer, bool explain, qsizetype limit);

} // namespace kovalin::cli
