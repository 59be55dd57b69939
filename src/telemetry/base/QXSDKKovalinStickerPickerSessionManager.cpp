#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include "platform/foundation/Clock.h"
#include "platform/foundation/Log.h"
#include "telemetry/base/TelemetryLog.h"

#include <QtCore/QUuid>

using namespace kovalin::platform;

namespace {

/// A shorter absence doesn't end a session.
constexpr qint64 shortestAbsenceMillis = 15'000;

} // namespace

QXSDKKovalinStickerPickerSessionManagerObserver::~QXSDKKovalinStickerPickerSessionManagerObserver() = default;

void QXSDKKovalinStickerPickerSessionManager::registerWeakObserver(
    const std::shared_ptr<QXSDKKovalinStickerPickerSessionManagerObserver>& observer)
{
    _observers.add(observer);
}

void QXSDKKovalinStickerPickerSessionManager::deregisterWeakObserver(
    const std::shared_ptr<QXSDKKovalinStickerPickerSessionManagerObserver>& observer)
{
    _observers.remove(observer);
}

void QXSDKKovalinStickerPickerSessionManager::didBecomeActive()
{
    if (isActive()) {
        KOVALIN_LOG_ERROR(kovalinTelemetry,
                          QStringLiteral("starting sticker picker session when it was already started"));
        return;
    }
    if (_shouldResumeLastSession()) {
        _resumedSessionTimes.append(_sessionTime);
    } else {
        _sessionId = _generateNewSessionId();
        _resumedSessionTimes = {};
    }
    _sessionTime = {._start = currentTimeMillis(), ._end = 0};
    _observers.forEach([](QXSDKKovalinStickerPickerSessionManagerObserver& observer) { observer.sessionDidStart(); });
    KOVALIN_LOG_DEBUG(kovalinTelemetry, QStringLiteral("Session started: ") + _sessionId.value_or(QString()));
}

void QXSDKKovalinStickerPickerSessionManager::willResignActive()
{
    if (!isActive()) {
        KOVALIN_LOG_ERROR(kovalinTelemetry, QStringLiteral("ending sticker picker session before it starts"));
        return;
    }
    KOVALIN_LOG_DEBUG(kovalinTelemetry, QStringLiteral("Session ending: ") + _sessionId.value_or(QString()));
    _sessionTime._end = currentTimeMillis();
    _observers.forEach([](QXSDKKovalinStickerPickerSessionManagerObserver& observer) { observer.sessionDidEnd(); });
}

bool QXSDKKovalinStickerPickerSessionManager::isActive() const
{
    return _sessionTime._start >= 1 && _sessionTime._end == 0;
}

qint64 QXSDKKovalinStickerPickerSessionManager::sessionTime() const
{
    qint64 total = 0;
    for (const SessionTime& span : _resumedSessionTimes) {
        if (span._start > 0 && span._end > span._start) {
            total += span._end - span._start;
        }
    }
    const qint64 end = _sessionTime._end < 1 ? currentTimeMillis() : _sessionTime._end;
    return total + (end - _sessionTime._start);
}

const std::optional<QString>& QXSDKKovalinStickerPickerSessionManager::sessionId() const
{
    return _sessionId;
}

/// A clock that was set back gives a negative absence, which resumes too.
bool QXSDKKovalinStickerPickerSessionManager::_shouldResumeLastSession() const
{
    return _sessionTime._start >= 1 && _sessionTime._end >= 1 &&
           currentTimeMillis() - _sessionTime._end < shortestAbsenceMillis;
}

QString QXSDKKovalinStickerPickerSessionManager::_generateNewSessionId()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}
