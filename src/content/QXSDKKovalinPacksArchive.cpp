#include "content/QXSDKKovalinPacksArchive.h"

#include "content/ContentLog.h"
#include "kits/login/QXSDKLoginClient.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/foundation/Application.h"
#include "platform/foundation/CachesDirectory.h"
#include "platform/foundation/KeyedArchiver.h"
#include "platform/foundation/KeyedUnarchiver.h"
#include "platform/foundation/Log.h"
#include "platform/foundation/PlatformException.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <exception>
#include <utility>

using namespace kovalin::platform;

/// What the archive's jobs work on. Apart from the archive, so that jobs can outlive it.
class QXSDKKovalinPacksArchive::State final {
public:
    void unarchive(const UnarchiveCompletion& completion)
    {
        if (_didUnarchive) {
            completion(_packsToArchive);
            return;
        }
        std::exception_ptr other;
        try {
            _packsToArchive = read();
        } catch (const PlatformException&) {
            KOVALIN_LOG_DEBUG(kovalinContent, QStringLiteral("Could not read the archive!"));
        } catch (...) {
            other = std::current_exception();
        }
        _didUnarchive = true;
        _clearFromDisk();
        completion(_packsToArchive);
        if (other) {
            std::rethrow_exception(other);
        }
    }

    void archive(const KovalinPackList& packs)
    {
        _packsToArchive = packs;
        _didArchive = false;
    }

    /// Whether the write succeeds isn't looked at: the next one comes with new packs.
    void commit()
    {
        if (_didArchive || !_packsToArchive) {
            return;
        }
        KOVALIN_LOG_DEBUG(kovalinContent, QStringLiteral("Now writing packs to disk..."));
        static_cast<void>(QDir().mkpath(QFileInfo(path).path()));
        static_cast<void>(KeyedArchiver::archiveRootObject(*_packsToArchive, path));
        _didArchive = true;
    }

    void _clearFromDisk() const { QFile::remove(path); }

    const QString path = cachesDirectory() + QStringLiteral("/qxsdk-kovalin-packs.plist");

private:
    [[nodiscard]] std::optional<KovalinPackList> read() const
    {
        const auto packs = KeyedUnarchiver::unarchiveObjectsWithFile<KovalinPack>(path);
        return packs ? std::optional(KovalinPackList(packs->cbegin(), packs->cend())) : std::nullopt;
    }

    std::optional<KovalinPackList> _packsToArchive; // what was read, or what will be written
    bool _didUnarchive = false;
    bool _didArchive = false;
};

std::shared_ptr<QXSDKKovalinPacksArchive> QXSDKKovalinPacksArchive::shared()
{
    // Never destroyed, since queues may still run when statics are.
    static const auto& archive = *new std::shared_ptr<QXSDKKovalinPacksArchive>(create());
    return archive;
}

std::shared_ptr<QXSDKKovalinPacksArchive> QXSDKKovalinPacksArchive::create()
{
    const std::shared_ptr<QXSDKKovalinPacksArchive> archive(new QXSDKKovalinPacksArchive);
    QXSDKLoginClient::addLoginStatusObserver(archive);
    NotificationCenter::defaultCenter().addObserver(archive, &QXSDKKovalinPacksArchive::_commitPacks,
                                                    UIApplicationWillResignActiveNotification);
    return archive;
}

QXSDKKovalinPacksArchive::QXSDKKovalinPacksArchive()
    : _state(std::make_shared<State>())
    , _queue(std::make_unique<SerialQueue>(
          QStringLiteral("com.vole.connect.QXSDKKovalinPacksArchive"),
          // What was told when the application resigned may still be pending, and would be dropped.
          SerialQueueEvents{.applicationWillEnd = [state = _state] {
              state->commit();
          }}))
{
}

QXSDKKovalinPacksArchive::~QXSDKKovalinPacksArchive() = default;

void QXSDKKovalinPacksArchive::unarchivePacksWithCompletion(UnarchiveCompletion completion)
{
    _queue->async([state = _state, completion = std::move(completion)] { state->unarchive(completion); });
}

void QXSDKKovalinPacksArchive::archivePacks(const KovalinPackList& packs)
{
    _queue->async([state = _state, packs] { state->archive(packs); });
}

bool QXSDKKovalinPacksArchive::hasPacksToUnarchiveOnDisk() const
{
    return QFile::exists(_state->path);
}

void QXSDKKovalinPacksArchive::clear()
{
    _queue->async([state = _state] { state->_clearFromDisk(); });
}

void QXSDKKovalinPacksArchive::qxsdkLoginDidUnlink()
{
    clear();
}

void QXSDKKovalinPacksArchive::_commitPacks()
{
    _queue->async([state = _state] { state->commit(); });
}
