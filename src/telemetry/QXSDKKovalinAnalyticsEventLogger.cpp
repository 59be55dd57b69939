#include "telemetry/QXSDKKovalinAnalyticsEventLogger.h"

#include "QXSDKKovalinKit/Version.h"
#include "kits/core/QXSDKAnalyticsEventsQueue.h"
#include "kits/core/VoleKitEvents.h"
#include "kits/core/picoproto.h"
#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "telemetry/KovalinKitEventWriters.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <QtCore/QByteArray>

#include <optional>
#include <utility>
#include <vector>

namespace {

/// This library, among the kits whose events share a queue.
constexpr int kovalinKitType = 1;

/// An embedded message passes to the one around it.
constexpr int takes = 1;

// What the wire calls the state of a bar.
constexpr std::int32_t barShown = 0;
constexpr std::int32_t barNotShown = 1;

struct MessageDeleter {
    void operator()(picoproto_ctx_s* message) const { picoproto_free(message); }
};
using Message = std::unique_ptr<picoproto_ctx_s, MessageDeleter>;

using WriteMessage = void (*)(picoproto_ctx_s* message, picoproto_ctx_s* inner, int takes);
using WriteText = void (*)(picoproto_ctx_s* message, const char* value);

Message newMessage(const char* name)
{
    return Message(picoproto_new(name));
}

void write(const Message& message, WriteText field, const std::optional<QString>& text)
{
    field(message.get(), text ? text->toUtf8().constData() : nullptr);
}

/// A new event with its first field.
Message newEvent(const char* name, WriteMessage writeBase, const QXSDKKovalinAnalyticsEventLogger& logger)
{
    Message event = newMessage(name);
    writeBase(event.get(), logger.kovalinKitEventBase(), takes);
    return event;
}

void addToQueue(Message serverEventData)
{
    QXSDKAnalyticsEventsQueue::sharedInstance()->addEvent(
        VoleKitEvents::serverEventWithServerEventData(serverEventData.release()));
}

void send(Message event, WriteMessage embed)
{
    Message serverEventData = newMessage("ServerEventData");
    embed(serverEventData.get(), event.release(), takes);
    addToQueue(std::move(serverEventData));
}

std::int32_t barConfiguration(bool isShown)
{
    return isShown ? barShown : barNotShown;
}

} // namespace

QXSDKKovalinAnalyticsEventLogger::QXSDKKovalinAnalyticsEventLogger(
    std::shared_ptr<const QXSDKKovalinStickerPickerSessionManager> sessionManager)
    : _sessionManager(std::move(sessionManager))
{
}

QXSDKKovalinAnalyticsEventLogger::~QXSDKKovalinAnalyticsEventLogger() = default;

void QXSDKKovalinAnalyticsEventLogger::logShare(const KovalinSticker& sticker, QXSDKKovalinCategory category) const
{
    Message event = newEvent("KovalinKitShare", picoproto_write_KovalinKitShare_kovalin_kit_event_base, *this);
    write(event, picoproto_write_KovalinKitShare_sticker_id, sticker.comicId());
    picoproto_write_KovalinKitShare_share_category(event.get(), QXSDKKovalinCategoryToShareCategory(category));
    if (const int searchCategory = QXSDKKovalinCategoryToSearchCategory(category); searchCategory != 0) {
        picoproto_write_KovalinKitShare_search_category(event.get(), searchCategory);
    }
    send(std::move(event), picoproto_write_ServerEventData_kovalin_kit_share);
}

void QXSDKKovalinAnalyticsEventLogger::logSearch(const QXSDKKovalinSearchTermList& searchTerms) const
{
    Message event = newEvent("KovalinKitSearch", picoproto_write_KovalinKitSearch_kovalin_kit_event_base, *this);
    std::vector<picoproto_ctx_s*> terms;
    terms.reserve(static_cast<std::size_t>(searchTerms.size()));
    for (const QXSDKKovalinSearchTermPtr& searchTerm : searchTerms) {
        Message term = newMessage("KovalinKitSearchTerm");
        picoproto_write_KovalinKitSearchTerm_category(term.get(),
                                                      QXSDKKovalinCategoryToSearchCategory(searchTerm->category()));
        write(term, picoproto_write_KovalinKitSearchTerm_value, searchTerm->value());
        terms.push_back(term.release());
    }
    picoproto_write_KovalinKitSearch_search_terms(event.get(), terms.data(), terms.size(), takes);
    send(std::move(event), picoproto_write_ServerEventData_kovalin_kit_search);
}

void QXSDKKovalinAnalyticsEventLogger::logStickerPickerOpen(qint32 viewType,
                                                            const KovalinStickerPtr& previewIconSticker,
                                                            const QXSDKKovalinStickerPickerConfig& config) const
{
    Message event = newEvent("KovalinKitStickerPickerOpen",
                             picoproto_write_KovalinKitStickerPickerOpen_kovalin_kit_event_base, *this);
    picoproto_write_KovalinKitStickerPickerOpen_sticker_picker_view(event.get(), viewType);
    picoproto_write_KovalinKitStickerPickerOpen_search_bar_configuration(event.get(),
                                                                         barConfiguration(config.showSearchBar()));
    picoproto_write_KovalinKitStickerPickerOpen_tag_selector_configuration(event.get(),
                                                                           barConfiguration(config.showSearchPills()));
    if (previewIconSticker) {
        write(event, picoproto_write_KovalinKitStickerPickerOpen_preview_icon_sticker_id,
              previewIconSticker->comicId());
    }
    send(std::move(event), picoproto_write_ServerEventData_kovalin_kit_sticker_picker_open);
}

void QXSDKKovalinAnalyticsEventLogger::logStickerPickerClose() const
{
    Message event = newEvent("KovalinKitStickerPickerClose",
                             picoproto_write_KovalinKitStickerPickerClose_kovalin_kit_event_base, *this);
    picoproto_write_KovalinKitStickerPickerClose_sticker_picker_session_duration_millis(event.get(),
                                                                                        _sessionManager->sessionTime());
    send(std::move(event), picoproto_write_ServerEventData_kovalin_kit_sticker_picker_close);
}

void QXSDKKovalinAnalyticsEventLogger::logStickerPickerMount() const
{
    send(newEvent("KovalinKitStickerPickerMount", picoproto_write_KovalinKitStickerPickerMount_kovalin_kit_event_base,
                  *this),
         picoproto_write_ServerEventData_kovalin_kit_sticker_picker_mount);
}

void QXSDKKovalinAnalyticsEventLogger::logPreviewIconChange(const KovalinStickerPtr& sticker) const
{
    // The outermost message has no field for this event, so it ends here; the id alone travels.
    const Message event = newEvent("KovalinKitPreviewIconChange",
                                   picoproto_write_KovalinKitPreviewIconChange_kovalin_kit_event_base, *this);
    Message serverEventData = newMessage("ServerEventData");
    if (sticker) {
        write(serverEventData, picoproto_write_KovalinKitPreviewIconChange_preview_sticker_id, sticker->comicId());
    }
    addToQueue(std::move(serverEventData));
}

void QXSDKKovalinAnalyticsEventLogger::logHearthLinkTap() const
{
    send(newEvent("KovalinKitHearthLinkTap", picoproto_write_KovalinKitHearthLinkTap_kovalin_kit_event_base, *this),
         picoproto_write_ServerEventData_kovalin_kit_hearth_link_tap);
}

void QXSDKKovalinAnalyticsEventLogger::logHearthLinkSuccess() const
{
    send(newEvent("KovalinKitHearthLinkSuccess", picoproto_write_KovalinKitHearthLinkSuccess_kovalin_kit_event_base,
                  *this),
         picoproto_write_ServerEventData_kovalin_kit_hearth_link_success);
}

void QXSDKKovalinAnalyticsEventLogger::logCreateAvatarTap() const
{
    send(newEvent("KovalinKitCreateAvatarTap", picoproto_write_KovalinKitCreateAvatarTap_kovalin_kit_event_base, *this),
         picoproto_write_ServerEventData_kovalin_kit_create_avatar_tap);
}

void QXSDKKovalinAnalyticsEventLogger::logPermissionUpdateWithStatus(qint32 status) const
{
    Message event = newEvent("KovalinKitPermissionUpdate",
                             picoproto_write_KovalinKitPermissionUpdate_kovalin_kit_event_base, *this);
    picoproto_write_KovalinKitPermissionUpdate_status(event.get(), status);
    send(std::move(event), picoproto_write_ServerEventData_kovalin_kit_permission_update);
}

picoproto_ctx_s* QXSDKKovalinAnalyticsEventLogger::kovalinKitEventBase() const
{
    Message kitBase(VoleKitEvents::kitEventBaseWithKitType(kovalinKitType));
    picoproto_write_KitEventBase_kit_variant_version(kitBase.get(), QXSDKKovalinKitVersionString);
    Message base = newMessage("KovalinKitEventBase");
    picoproto_write_KovalinKitEventBase_kit_event_base(base.get(), kitBase.release(), takes);
    write(base, picoproto_write_KovalinKitEventBase_sticker_picker_session_id, _sessionManager->sessionId());
    return base.release();
}
