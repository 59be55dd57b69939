#pragma once

#include "kits/core/QXSDKAnalyticsEventsQueue.h"

struct picoproto_ctx_s;

/// What the events of all kits have in common. Any thread.
class VoleKitEvents final {
public:
    VoleKitEvents() = delete;

    /// A new "KitEventBase" message, which is the caller's, with what is known of the host and the system:
    ///
    ///     1 kit_type         varint, as given
    ///     2 client_id        string, of the client setup
    ///     3 locale           string, of the system, as "en-GB"
    ///     4 os_name          string
    ///     5 os_version       string
    ///     7 (the kit's own version, which the kit writes)
    [[nodiscard]] static picoproto_ctx_s* kitEventBaseWithKitType(int kitType);

    /// Wraps a "ServerEventData" message, which passes to this call, into an entry for the queue.
    [[nodiscard]] static QXSDKServerEvent serverEventWithServerEventData(picoproto_ctx_s* serverEventData);
};
