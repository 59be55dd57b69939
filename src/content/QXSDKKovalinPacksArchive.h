#pragma once

#include "kits/login/QXSDKLoginStatusObserver.h"
#include "search/KovalinPack.h"

#include <QtCore/QString>

#include <functional>
#include <memory>
#include <optional>

namespace kovalin::platform {
class SerialQueue;
} // namespace kovalin::platform

/// Keeps the last packs over a restart, in one file. The file never stands beside a copy in memory: reading deletes it, and it is
/// written when the application resigns active, or ends, if there is anything new. A crash while the application is active loses
/// it.
///
/// Any thread. Files are read and written on a queue of the archive's own.
class QXSDKKovalinPacksArchive final : public QXSDKLoginStatusObserver {
public:
    /// The packs of the archive; absent where there are none.
    using UnarchiveCompletion = std::function<void(const std::optional<KovalinPackList>& packs)>;

    /// The instance of the process, made on first use and never destroyed.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinPacksArchive> shared();

    /// An archive in the caches directory as it is set now, told of resignations and of the login status.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinPacksArchive> create();
    ~QXSDKKovalinPacksArchive() override;
    Q_DISABLE_COPY_MOVE(QXSDKKovalinPacksArchive)

    /// Gives the packs in memory, which at the first time are those of the file. The completion, which must not be empty, is
    /// called exactly once, on the archive's queue. A damaged file counts as none.
    void unarchivePacksWithCompletion(UnarchiveCompletion completion);

    /// Keeps the packs in memory, to be written at the next resignation.
    void archivePacks(const KovalinPackList& packs);

    /// Whether the file exists now, looked up on the caller's thread.
    [[nodiscard]] bool hasPacksToUnarchiveOnDisk() const;

    /// Deletes the file. What is in memory stays, and what hasn't been written yet still will be.
    void clear();

    /// Clears.
    void qxsdkLoginDidUnlink() override;

private:
    class State;

    QXSDKKovalinPacksArchive();
    void _commitPacks();

    const std::shared_ptr<State> _state; // the queue only, but for the path
    const std::unique_ptr<kovalin::platform::SerialQueue> _queue;
};
