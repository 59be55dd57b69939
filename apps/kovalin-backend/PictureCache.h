#pragma once

#include "platform/dispatch/SerialQueue.h"

#include <QtCore/QByteArray>
#include <QtCore/QCache>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace kovalin::backend {

/// Has pictures drawn on a queue of its own, so that a page full of them keeps no other request waiting; each once for all that ask
/// for it at the same time, and the latest ones are kept. The server's thread only.
///
/// Lifetime: what is drawn holds it weakly; what waits for it then goes without having been called.
class PictureCache final : public std::enable_shared_from_this<PictureCache> {
public:
    /// Runs a job on the server's thread, or drops it where that has ended. Called on any thread.
    using Post = std::function<void(std::function<void()> job)>;

    /// Called on the queue.
    using Draw = std::function<QByteArray()>;
    using Drawn = std::function<void(const QByteArray& picture)>;

    explicit PictureCache(Post post);
    Q_DISABLE_COPY_MOVE(PictureCache)

    /// Gives the picture that `key` stands for, at once where it is kept, else once `draw` has drawn it.
    void find(const QByteArray& key, Draw draw, Drawn drawn);

private:
    void _add(const QByteArray& key, const QByteArray& picture);

    const Post _post;
    QCache<QByteArray, QByteArray> _pictures; // costs are bytes
    std::map<QByteArray, std::vector<Drawn>> _waiting;
    platform::SerialQueue _queue{QStringLiteral("BackendPictures")};
};

} // namespace kovalin::backend
