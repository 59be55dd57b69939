#pragma once

#include "kits/core/default/Outbox.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QtGlobal>

#include <memory>
#include <mutex>

namespace kovalin::kits {

/// An outbox that obeys the analytics switch of the client setup: while it is off the outbox is empty, takes nothing and posts
/// nothing. Any thread.
///
/// - A change is carried out on the thread that replaces the setup, before that returns; only the disk comes later.
/// - An opt-out counts for all that was kept before it, even if the switch was on again before this was made: a file that lay
///   there then is erased, one that a predecessor left since is not.
class AnalyticsOutbox final {
public:
    /// `beginsRefusing` of the options doesn't matter.
    [[nodiscard]] static std::shared_ptr<AnalyticsOutbox> create(OutboxOptions options);
    Q_DISABLE_COPY_MOVE(AnalyticsOutbox)

    void add(QByteArray bytes);

    /// Ends the outbox, whoever still holds this. Nothing may be added any more.
    void end();

private:
    explicit AnalyticsOutbox(OutboxOptions options);

    void _followSetup();

    const QString _path;
    std::mutex _mutex;               // a change is carried out as a whole
    quint64 _optOuts = 0;            // those that were carried out; guarded by _mutex
    std::unique_ptr<Outbox> _outbox; // replaced under _mutex alone
};

} // namespace kovalin::kits
