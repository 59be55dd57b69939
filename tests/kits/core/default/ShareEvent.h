#pragma once

#include "kits/core/VoleKitEvents.h"
#include "kits/core/picoproto.h"

#include <string>

namespace kovalin::test {

/// A "ServerEventData" of a share: with a base of two levels, and a sticker's id, by which a test knows it again.
[[nodiscard]] inline QXSDKServerEvent shareEvent(const std::string& stickerId)
{
    picoproto_ctx_s* const base = picoproto_new("KovalinKitEventBase");
    picoproto_write_embedded_message_field(base, 1, VoleKitEvents::kitEventBaseWithKitType(1), 1);
    picoproto_write_string_field(base, 2, "session");
    picoproto_ctx_s* const share = picoproto_new("KovalinKitShare");
    picoproto_write_embedded_message_field(share, 1, base, 1);
    picoproto_write_string_field(share, 3, stickerId.c_str());
    picoproto_write_varint_field(share, 4, 2);
    picoproto_write_varint_field(share, 5, 3);
    picoproto_ctx_s* const data = picoproto_new("ServerEventData");
    picoproto_write_embedded_message_field(data, 32, share, 1);
    return VoleKitEvents::serverEventWithServerEventData(data);
}

} // namespace kovalin::test
