#pragma once

#include <cstddef>
#include <cstdint>

struct picoproto_ctx_s;

// The fields of the kit's event messages on the wire: a function for each, which knows the field's number and kind.
// Called in the order of the numbers. As with picoproto itself, one thread at a time writes to a message; a text is
// UTF-8 with a zero at the end, and null leaves its field absent; a negative number takes ten bytes; `takes` other than
// 0 hands the inner messages over.

// KitEventBase: what the events of all kits have in common

void picoproto_write_KitEventBase_kit_variant_version(picoproto_ctx_s* message, const char* value);

// KovalinKitEventBase: what this kit's events have in common

void picoproto_write_KovalinKitEventBase_kit_event_base(picoproto_ctx_s* message, picoproto_ctx_s* inner, int takes);
void picoproto_write_KovalinKitEventBase_sticker_picker_session_id(picoproto_ctx_s* message, const char* value);

// ServerEventData: the outermost message, with one event in it

void picoproto_write_ServerEventData_kovalin_kit_sticker_picker_open(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                     int takes);
void picoproto_write_ServerEventData_kovalin_kit_sticker_picker_close(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                      int takes);
void picoproto_write_ServerEventData_kovalin_kit_share(picoproto_ctx_s* message, picoproto_ctx_s* inner, int takes);
void picoproto_write_ServerEventData_kovalin_kit_search(picoproto_ctx_s* message, picoproto_ctx_s* inner, int takes);
void picoproto_write_ServerEventData_kovalin_kit_hearth_link_tap(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                 int takes);
void picoproto_write_ServerEventData_kovalin_kit_hearth_link_success(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                     int takes);
void picoproto_write_ServerEventData_kovalin_kit_create_avatar_tap(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                   int takes);
void picoproto_write_ServerEventData_kovalin_kit_permission_update(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                   int takes);
void picoproto_write_ServerEventData_kovalin_kit_sticker_picker_mount(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                      int takes);

// KovalinKitShare

void picoproto_write_KovalinKitShare_kovalin_kit_event_base(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                            int takes);
void picoproto_write_KovalinKitShare_sticker_id(picoproto_ctx_s* message, const char* value);
void picoproto_write_KovalinKitShare_share_category(picoproto_ctx_s* message, std::int32_t value);
void picoproto_write_KovalinKitShare_search_category(picoproto_ctx_s* message, std::int32_t value);

// KovalinKitSearch

void picoproto_write_KovalinKitSearch_kovalin_kit_event_base(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                             int takes);
void picoproto_write_KovalinKitSearch_search_terms(picoproto_ctx_s* message, picoproto_ctx_s* const* inners,
                                                   std::size_t count, int takes);

// KovalinKitSearchTerm

void picoproto_write_KovalinKitSearchTerm_category(picoproto_ctx_s* message, std::int32_t value);
void picoproto_write_KovalinKitSearchTerm_value(picoproto_ctx_s* message, const char* value);

// KovalinKitStickerPickerOpen

void picoproto_write_KovalinKitStickerPickerOpen_kovalin_kit_event_base(picoproto_ctx_s* message,
                                                                        picoproto_ctx_s* inner, int takes);
void picoproto_write_KovalinKitStickerPickerOpen_sticker_picker_view(picoproto_ctx_s* message, std::int32_t value);
void picoproto_write_KovalinKitStickerPickerOpen_search_bar_configuration(picoproto_ctx_s* message, std::int32_t value);
void picoproto_write_KovalinKitStickerPickerOpen_tag_selector_configuration(picoproto_ctx_s* message,
                                                                            std::int32_t value);
void picoproto_write_KovalinKitStickerPickerOpen_preview_icon_sticker_id(picoproto_ctx_s* message, const char* value);

// KovalinKitStickerPickerClose

void picoproto_write_KovalinKitStickerPickerClose_kovalin_kit_event_base(picoproto_ctx_s* message,
                                                                         picoproto_ctx_s* inner, int takes);
void picoproto_write_KovalinKitStickerPickerClose_sticker_picker_session_duration_millis(picoproto_ctx_s* message,
                                                                                         std::int64_t value);

// KovalinKitPermissionUpdate

void picoproto_write_KovalinKitPermissionUpdate_kovalin_kit_event_base(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                       int takes);
void picoproto_write_KovalinKitPermissionUpdate_status(picoproto_ctx_s* message, std::int32_t value);

// KovalinKitPreviewIconChange

void picoproto_write_KovalinKitPreviewIconChange_kovalin_kit_event_base(picoproto_ctx_s* message,
                                                                        picoproto_ctx_s* inner, int takes);
void picoproto_write_KovalinKitPreviewIconChange_preview_sticker_id(picoproto_ctx_s* message, const char* value);

// KovalinKitStickerPickerMount

void picoproto_write_KovalinKitStickerPickerMount_kovalin_kit_event_base(picoproto_ctx_s* message,
                                                                         picoproto_ctx_s* inner, int takes);

// KovalinKitHearthLinkTap

void picoproto_write_KovalinKitHearthLinkTap_kovalin_kit_event_base(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                    int takes);

// KovalinKitHearthLinkSuccess

void picoproto_write_KovalinKitHearthLinkSuccess_kovalin_kit_event_base(picoproto_ctx_s* message,
                                                                        picoproto_ctx_s* inner, int takes);

// KovalinKitCreateAvatarTap

void picoproto_write_KovalinKitCreateAvatarTap_kovalin_kit_event_base(picoproto_ctx_s* message, picoproto_ctx_s* inner,
                                                                      int takes);
