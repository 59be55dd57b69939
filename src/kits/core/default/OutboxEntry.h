#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QUuid>
#include <QtCore/QtGlobal>

#include <vector>

namespace kovalin::kits {

/// What is to be posted. A value.
struct OutboxEntry {
    QUuid id;        ///< by which a receiver knows it again when it comes twice
    qint64 time = 0; ///< when it was added, in milliseconds since 1970
    QByteArray bytes;

    friend bool operator==(const OutboxEntry&, const OutboxEntry&) = default;
};

/// What is posted in one request. A value.
struct OutboxBatch {
    QUuid id; ///< the same when the same is posted again
    std::vector<OutboxEntry> entries;
    quint64 dropped = 0; ///< entries that never got here, since the last batch that was taken
};

} // namespace kovalin::kits
