#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>

#include <cstddef>
#include <deque>
#include <mutex>

namespace kovalin::kits {

/// Where entries lie between the thread that adds them and the outbox's queue. Any thread; nothing here takes longer than an
/// append.
class OutboxInbox final {
public:
    struct Entry {
        qint64 time; ///< milliseconds since 1970
        QByteArray bytes;
    };

    struct Content {
        bool isErased = false; ///< what was taken before has to be forgotten, before these are kept
        std::deque<Entry> entries = {};
        quint64 dropped = 0;
    };

    /// Beyond `maxEntries`, or `maxBytes` in all, the oldest are dropped; one that is larger alone is dropped itself.
    OutboxInbox(std::size_t maxEntries, qsizetype maxBytes);
    Q_DISABLE_COPY_MOVE(OutboxInbox)

    /// Appends. True if somebody has to be sent for `take`: nobody is on the way.
    [[nodiscard]] bool add(Entry entry);

    /// Forgets what is here, and has the next `take` tell so. True as in `add`.
    [[nodiscard]] bool erase();

    /// Erases, and from then on takes nothing: what is added vanishes without being counted. True as in `add`.
    [[nodiscard]] bool eraseAndRefuse();

    /// Takes entries again.
    void accept();

    /// True between an erasure and the `take` that tells of it.
    [[nodiscard]] bool isErased() const;

    /// Gives what is here, and leaves nothing.
    [[nodiscard]] Content take();

    /// Who was on the way isn't any more.
    void nobodyComes();

private:
    [[nodiscard]] bool _erase(Content& erased); // under the mutex

    const std::size_t _maxEntries;
    const qsizetype _maxBytes;
    mutable std::mutex _mutex;
    Content _content;               // guarded by _mutex
    qsizetype _bytes = 0;           // guarded by _mutex
    bool _isSomebodyComing = false; // guarded by _mutex
    bool _isRefusing = false;       // guarded by _mutex
};

} // namespace kovalin::kits
