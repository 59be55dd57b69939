#include "platform/store/ImageDiskWorker.h"

#include "platform/foundation/Log.h"
#include "platform/store/StoreLog.h"

#include <QtCore/QFile>

#include <SQLiteCpp/Exception.h>
#include <sqlite3.h>

#include <algorithm>
#include <utility>

namespace kovalin::platform {

namespace {

// Until a limit is set.
constexpr qint64 kFirstByteLimit = qint64(50) * 1024 * 1024;

// An operation, one more try after a fresh opening, and one with a database made anew.
constexpr int kTries = 3;

} // namespace

ImageDiskWorker::ImageDiskWorker(const QString& path, std::shared_ptr<RecentUses> uses)
    : _files(path)
    , _uses(std::move(uses))
    , _byteLimit(kFirstByteLimit)
{
}

ImageDiskWorker::~ImageDiskWorker() = default;

void ImageDiskWorker::open()
{
    _attempt(Reopen::Yes, [](ImageDatabase&) {});
}

void ImageDiskWorker::setByteLimit(qint64 bytes)
{
    _byteLimit = std::max<qint64>(bytes, 0);
    _attempt(Reopen::No, [this](ImageDatabase& database) { database.trim(_byteLimit); });
}

QByteArray ImageDiskWorker::read(const ImageKey& key)
{
    QByteArray bytes;
    _attempt(Reopen::No, [&bytes, &key](ImageDatabase& database) { bytes = database.read(key); });
    if (!bytes.isNull() && _uses->note(key)) {
        writeUses();
    }
    return bytes;
}

void ImageDiskWorker::store(const ImageKey& key, const QByteArray& bytes, const QList<ImageKey>& used)
{
    _attempt(Reopen::Yes, [&](ImageDatabase& database) {
        database.store(key, bytes, _byteLimit, used);
        _isLogToBeCut = _isLogToBeCut && !database.cutLog();
    });
}

void ImageDiskWorker::remove(const ImageKey& key)
{
    _attempt(Reopen::No, [&key](ImageDatabase& database) { database.remove(key); });
}

void ImageDiskWorker::removeAll()
{
    static_cast<void>(_uses->take());
    const bool isEmptied = _attempt(Reopen::Yes, [this](ImageDatabase& database) {
        database.removeAll();
        _isLogToBeCut = !database.cutLog();
    });
    if (!isEmptied) {
        _database.reset();
        if (!_files.remove()) {
            KOVALIN_LOG_WARNING(storeLog, QStringLiteral("Pictures can't be removed from \"%1\"").arg(_files.path()));
        }
    }
    if (!_files.removeAside()) {
        KOVALIN_LOG_WARNING(
            storeLog, QStringLiteral("A damaged picture store beside \"%1\" can't be removed").arg(_files.path()));
    }
}

void ImageDiskWorker::writeUses()
{
    const QList<ImageKey> used = _uses->take();
    if (!used.isEmpty()) {
        _attempt(Reopen::No, [&used](ImageDatabase& database) { database.markUsed(used); });
    }
}

void ImageDiskWorker::close()
{
    if (_database) {
        writeUses();
    }
    _database.reset();
}

bool ImageDiskWorker::_attempt(Reopen reopen, const std::function<void(ImageDatabase&)>& work)
{
    for (int tries = 0; tries < kTries; ++tries) {
        const bool wasOpen = _database.has_value();
        try {
            if (!_isOpen(reopen)) {
                return false;
            }
            work(*_database);
            _hasComplained = false;
            return true;
        } catch (const SQLite::Exception& exception) {
            if (!_recover(exception, wasOpen)) {
                return false;
            }
        }
    }
    return false;
}

bool ImageDiskWorker::_isOpen(Reopen reopen)
{
    if (_database && !QFile::exists(_files.path())) {
        _database.reset(); // Somebody has cleared the folder; what SQLite still holds is lost to everybody else.
    }
    if (_database) {
        return true;
    }
    if (_isUnavailable && reopen == Reopen::No) {
        return false;
    }
    _isUnavailable = true; // unless all goes well
    if (!_files.makeFolder()) {
        _complain(QStringLiteral("its folder can't be made"));
        return false;
    }
    _database.emplace(_files.path());
    _isUnavailable = false;
    return true;
}

// Whether to try again, with what is there now.
bool ImageDiskWorker::_recover(const SQLite::Exception& exception, bool wasOpen)
{
    const QString why = QString::fromUtf8(exception.what());
    const bool isDamage = ImageDatabase::isDamage(exception);
    if (!isDamage && ImageDatabase::isPassing(exception)) {
        _complain(why);
        return false;
    }
    const auto identity = _database ? std::optional(_database->identity()) : std::nullopt;
    _database.reset();
    if (isDamage) {
        return _isAnother(identity) || _replace(why);
    }
    if (_files.areObstructed()) {
        return _replace(QStringLiteral("what has its name isn't a file"));
    }
    if (wasOpen) {
        return true; // The file may have gone from under the connection: a fresh one tells.
    }
    _complain(why);
    return false;
}

// Another process may have found the damage first: then what it has made anew is there by now, and is opened.
bool ImageDiskWorker::_isAnother(std::optional<qint64> identity)
{
    try {
        _database.emplace(_files.path());
        if (identity != _database->identity()) {
            _isUnavailable = false;
            return true;
        }
    } catch (const SQLite::Exception&) {
        // It is as damaged as it was.
    }
    _database.reset();
    return false;
}

bool ImageDiskWorker::_replace(const QString& why)
{
    if (!_files.moveAside()) {
        _isUnavailable = true;
        _complain(why + QStringLiteral("; and it can't be moved aside"));
        return false;
    }
    KOVALIN_LOG_WARNING(
        storeLog,
        QStringLiteral("The picture store \"%1\" is damaged (%2), starting a new one").arg(_files.path(), why));
    _isUnavailable = false;
    return true;
}

void ImageDiskWorker::_complain(const QString& why)
{
    if (!std::exchange(_hasComplained, true)) {
        KOVALIN_LOG_WARNING(storeLog,
                            QStringLiteral("The picture store \"%1\" can't be used now: %2").arg(_files.path(), why));
    }
}

} // namespace kovalin::platform
