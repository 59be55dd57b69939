#include "telemetry/KovalinKitEventWriters.h"

#include "kits/core/picoproto.h"

namespace {

/// Negative numbers as protobuf wants them, extended to 64 bits.
std::uint64_t varint(std::int64_t value)
{
    return static_cast<std::uint64_t>(value);
}

} // namespace

void picoproto_write_KitEventBase_kit_variant_version(picoproto_ctx_s* message, const char* value)
{
    picoproto_write_string_field(message, 7, value);
}

void picoproto_write_KovalinKitEventBase_kit_event_base(picoproto_ctx_s* message, picoproto_ctx_s* inner, int takes)
{
    picoproto_write_embedded_message_field(message, 1, inner, takes);
}

void picoproto_write_KovalinKitEventBase_sticker_picker_session_id(picoproto_ctx_s* message, const char* value)
{
    picoproto_write_string_field(message, 2, value);
}

void picoproto_write_ServerEventData_kovalin_kit_sticker_picker_open(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                     int takes)
{
    picoproto_write_embedded_message_field(message, 30, inner, takes);
}

void picoproto_write_ServerEventData_kovalin_kit_sticker_picker_close(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                      int takes)
{
    picoproto_write_embedded_message_field(message, 31, inner, takes);
}

void picoproto_write_ServerEventData_kovalin_kit_share(picoproto_ctx_s* message, picoproto_ctx_s* inner, int takes)
{
    picoproto_write_embedded_message_field(message, 32, inner, takes);
}

void picoproto_write_ServerEventData_kovalin_kit_search(picoproto_ctx_s* message, picoproto_ctx_s* inner, int takes)
{
    picoproto_write_embedded_message_field(message, 33, inner, takes);
}

void picoproto_write_ServerEventData_kovalin_kit_hearth_link_tap(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                 int takes)
{
    picoproto_write_embedded_message_field(message, 34, inner, takes);
}

void picoproto_write_ServerEventData_kovalin_kit_hearth_link_success(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                     int takes)
{
    picoproto_write_embedded_message_field(message, 35, inner, takes);
}

void picoproto_write_ServerEventData_kovalin_kit_create_avatar_tap(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                   int takes)
{
    picoproto_write_embedded_message_field(message, 36, inner, takes);
}

void picoproto_write_ServerEventData_kovalin_kit_permission_update(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                   int takes)
{
    picoproto_write_embedded_message_field(message, 39, inner, takes);
}

void picoproto_write_ServerEventData_kovalin_kit_sticker_picker_mount(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                      int takes)
{
    picoproto_write_embedded_message_field(message, 73, inner, takes);
}

void picoproto_write_KovalinKitShare_kovalin_kit_event_base(picoproto_ctx_s* message, picoproto_ctx_s* inner, int takes)
{
    picoproto_write_embedded_message_field(message, 1, inner, takes);
}

void picoproto_write_KovalinKitShare_sticker_id(picoproto_ctx_s* message, const char* value)
{
    picoproto_write_string_field(message, 3, value);
}

void picoproto_write_KovalinKitShare_share_category(picoproto_ctx_s* message, std::int32_t value)
{
    picoproto_write_varint_field(message, 4, varint(value));
}

void picoproto_write_KovalinKitShare_search_category(picoproto_ctx_s* message, std::int32_t value)
{
    picoproto_write_varint_field(message, 5, varint(value));
}

void picoproto_write_KovalinKitSearch_kovalin_kit_event_base(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                             int takes)
{
    picoproto_write_embedded_message_field(message, 1, inner, takes);
}

void picoproto_write_KovalinKitSearch_search_terms(picoproto_ctx_s* message, picoproto_ctx_s* const* inners,
                                                   std::size_t count, int takes)
{
    picoproto_write_repeated_embedded_message_field(message, 2, inners, count, takes);
}

void picoproto_write_KovalinKitSearchTerm_category(picoproto_ctx_s* message, std::int32_t value)
{
    picoproto_write_varint_field(message, 1, varint(value));
}

void picoproto_write_KovalinKitSearchTerm_value(picoproto_ctx_s* message, const char* value)
{
    picoproto_write_string_field(message, 2, value);
}

void picoproto_write_KovalinKitStickerPickerOpen_kovalin_kit_event_base(picoproto_ctx_s* message,
                                                                        picoproto_ctx_s* inner, int takes)
{
    picoproto_write_embedded_message_field(message, 1, inner, takes);
}

void picoproto_write_KovalinKitStickerPickerOpen_sticker_picker_view(picoproto_ctx_s* message, std::int32_t value)
{
    picoproto_write_varint_field(message, 2, varint(value));
}

void picoproto_write_KovalinKitStickerPickerOpen_search_bar_configuration(picoproto_ctx_s* message, std::int32_t value)
{
    picoproto_write_varint_field(message, 3, varint(value));
}

void picoproto_write_KovalinKitStickerPickerOpen_tag_selector_configuration(picoproto_ctx_s* message,
                                                                            std::int32_t value)
{
    picoproto_write_varint_field(message, 4, varint(value));
}

void picoproto_write_KovalinKitStickerPickerOpen_preview_icon_sticker_id(picoproto_ctx_s* message, const char* value)
{
    picoproto_write_string_field(message, 5, value);
}

void picoproto_write_KovalinKitStickerPickerClose_kovalin_kit_event_base(picoproto_ctx_s* message,
                                                                         picoproto_ctx_s* inner, int takes)
{
    picoproto_write_embedded_message_field(message, 1, inner, takes);
}

void picoproto_write_KovalinKitStickerPickerClose_sticker_picker_session_duration_millis(picoproto_ctx_s* message,
                                                                                         std::int64_t value)
{
    picoproto_write_varint_field(message, 2, varint(value));
}

void picoproto_write_KovalinKitPermissionUpdate_kovalin_kit_event_base(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                       int takes)
{
    picoproto_write_embedded_message_field(message, 1, inner, takes);
}

void picoproto_write_KovalinKitPermissionUpdate_status(picoproto_ctx_s* message, std::int32_t value)
{
    picoproto_write_varint_field(message, 2, varint(value));
}

void picoproto_write_KovalinKitPreviewIconChange_kovalin_kit_event_base(picoproto_ctx_s* message,
                                                                        picoproto_ctx_s* inner, int takes)
{
    picoproto_write_embedded_message_field(message, 1, inner, takes);
}

void picoproto_write_KovalinKitPreviewIconChange_preview_sticker_id(picoproto_ctx_s* message, const char* value)
{
    picoproto_write_string_field(message, 2, value);
}

void picoproto_write_KovalinKitStickerPickerMount_kovalin_kit_event_base(picoproto_ctx_s* message,
                                                                         picoproto_ctx_s* inner, int takes)
{
    picoproto_write_embedded_message_field(message, 1, inner, takes);
}

void picoproto_write_KovalinKitHearthLinkTap_kovalin_kit_event_base(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                    int takes)
{
    picoproto_write_embedded_message_field(message, 1, inner, takes);
}

void picoproto_write_KovalinKitHearthLinkSuccess_kovalin_kit_event_base(picoproto_ctx_s* message,
                                                                        picoproto_ctx_s* inner, int takes)
{
    picoproto_write_embedded_message_field(message, 1, inner, takes);
}

void picoproto_write_KovalinKitCreateAvatarTap_kovalin_kit_event_base(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                      int takes)
{
    picoproto_write_embedded_message_field(message, 1, inner, takes);
}
