#pragma once

#include "search/KovalinSticker.h"
#include "search/QXSDKKovalinCategory.h"
#include "search/QXSDKKovalinSearchTerm.h"

#include <QtCore/QtGlobal>

#include <memory>

class QXSDKKovalinStickerPickerConfig;
class QXSDKKovalinStickerPickerSessionManager;
struct picoproto_ctx_s;

/// Tells the analytics what users do in a picker. Each operation builds one protobuf message, hands it to the shared
/// QXSDKAnalyticsEventsQueue before it returns, and keeps nothing of it; none fails.
///
/// Runs on the caller's thread, which is the session manager's: the main thread. Texts end at their first zero
/// character; one that is absent leaves its field out.
class QXSDKKovalinAnalyticsEventLogger final {
public:
    /// Events carry the manager's session id; absent before its first session. The manager isn't null, and lives on for
    /// as long as this does.
    explicit QXSDKKovalinAnalyticsEventLogger(
        std::shared_ptr<const QXSDKKovalinStickerPickerSessionManager> sessionManager);
    ~QXSDKKovalinAnalyticsEventLogger();
    Q_DISABLE_COPY_MOVE(QXSDKKovalinAnalyticsEventLogger)

    /// A sticker was chosen. Any number may stand for the category: one that is none counts as an unknown source.
    void logShare(const KovalinSticker& sticker, QXSDKKovalinCategory category) const;

    /// What was searched, in order. Not for an empty list, which makes an event without any search in it.
    void logSearch(const QXSDKKovalinSearchTermList& searchTerms) const;

    /// A view of the picker became visible. `viewType` is the number of a QXSDKKovalinViewType, and passed on whatever
    /// it is. The sticker is what the icon shows; null without one.
    void logStickerPickerOpen(qint32 viewType, const KovalinStickerPtr& previewIconSticker,
                              const QXSDKKovalinStickerPickerConfig& config) const;

    /// The session ended, with its time as the manager tells it now.
    void logStickerPickerClose() const;

    /// The picker's view was loaded.
    void logStickerPickerMount() const;

    /// The icon shows another sticker; null for none. What is sent has no event message in it, but the sticker's id as
    /// field 2 of the outermost message, or nothing.
    void logPreviewIconChange(const KovalinStickerPtr& sticker) const;

    /// The button that links an account was tapped.
    void logHearthLinkTap() const;

    /// An account is linked.
    void logHearthLinkSuccess() const;

    /// The button that leads to where avatars are made was tapped.
    void logCreateAvatarTap() const;

    /// A login ended: 1 with the required scope, 2 without it, 3 in failure.
    void logPermissionUpdateWithStatus(qint32 status) const;

    /// A new "KovalinKitEventBase" message, which is the caller's: what all of the library's events have in common,
    /// with the library's version and the session's id.
    [[nodiscard]] picoproto_ctx_s* kovalinKitEventBase() const;

private:
    const std::shared_ptr<const QXSDKKovalinStickerPickerSessionManager> _sessionManager;
};
