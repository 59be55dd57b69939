#pragma once

#include "platform/foundation/WeakSet.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManagerObserver.h"
#include "telemetry/base/SessionTime.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <memory>
#include <optional>

/// The sessions of one picker: the spans during which it is on screen with the application active. A picker that goes and comes
/// back within 15 seconds resumes its session.
///
/// Main thread only. Observers are told at once, in no defined order, and are held weakly.
class QXSDKKovalinStickerPickerSessionManager final {
public:
    QXSDKKovalinStickerPickerSessionManager() = default;
    Q_DISABLE_COPY_MOVE(QXSDKKovalinStickerPickerSessionManager)

    void registerWeakObserver(const std::shared_ptr<QXSDKKovalinStickerPickerSessionManagerObserver>& observer);
    void deregisterWeakObserver(const std::shared_ptr<QXSDKKovalinStickerPickerSessionManagerObserver>& observer);

    /// Starts a session, or resumes the last one. While one is active, an error line and no more.
    void didBecomeActive();

    /// Ends the active span. While none is active, an error line and no more.
    void willResignActive();

    [[nodiscard]] bool isActive() const;

    /// How long the session has been active, in milliseconds: the sum of its spans, the running one up to now. Before the first
    /// session it is the time since 1970.
    [[nodiscard]] qint64 sessionTime() const;

    /// The id of the session, or of the last one, as "123e4567-e89b-42d3-a456-426614174000"; absent before the first.
    [[nodiscard]] const std::optional<QString>& sessionId() const;

private:
    [[nodiscard]] bool _shouldResumeLastSession() const;
    [[nodiscard]] static QString _generateNewSessionId();

    QList<SessionTime> _resumedSessionTimes; // earlier spans of the session, oldest first
    SessionTime _sessionTime;                // the latest span
    kovalin::platform::WeakSet<QXSDKKovalinStickerPickerSessionManagerObserver> _observers;
    std::optional<QString> _sessionId;
};
