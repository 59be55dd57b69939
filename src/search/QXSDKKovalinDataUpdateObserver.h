#pragma once

#include "kits/core/QXSDKError.h"
#include "search/KovalinPack.h"

#include <optional>

/// Told of content as it is loaded. Called on any thread.
class QXSDKKovalinDataUpdateObserver {
public:
    virtual ~QXSDKKovalinDataUpdateObserver();

    /// The packs are there; absent packs mean that the user has no content.
    virtual void contentDidLoadWithPacks(const std::optional<KovalinPackList>& packs) = 0;

    /// The packs could not be loaded; what was there before stays.
    virtual void contentLoadDidFail(const QXSDKError& error) = 0;
};
