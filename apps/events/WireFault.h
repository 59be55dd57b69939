#pragma once

#include <QtCore/QByteArrayView>
#include <QtCore/QString>

#include <cstdint>
#include <map>
#include <optional>

namespace kovalin::analytics {

/// What has to be known of a message to walk over its bytes: its declared fields by number.
struct MessageShape {
    struct Field {
        QString name;
        bool isText = false;
        bool isRepeated = false;
        const MessageShape* message = nullptr; // of a field that is a message; outlives this
    };

    std::map<std::uint32_t, Field> fields;
};

/// The most fields of a message with all that are in it, and how deep messages and groups may lie in one another. A
/// batch of events is far below both; one that keeps to them takes some tens of megabytes beside its bytes when it is
/// read.
inline constexpr int kMostFields = 100'000;
inline constexpr int kDeepestLevel = 64;

/// What keeps bytes from being read as a message of this shape, in one line that names the field and the byte; absent
/// where nothing does. The library that reads messages only tells that it can't.
///
/// Looks at the encoding of all fields, declared or not, at the texts, which have to be UTF-8, and at the two limits.
/// Any thread.
[[nodiscard]] std::optional<QString> wireFault(QByteArrayView bytes, const MessageShape& shape);

} // namespace kovalin::analytics
