#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace vole::learned_search {

/// The server's answer to the question for a newer model. A plain value.
struct KovalinApiResponse {
    /// Whether the server has a model that the client should fetch.
    bool shouldUpdate;
    /// Where to fetch it; absent where there is none.
    std::optional<std::string> remoteModelUrl;
    /// Its version; absent where there is none.
    std::optional<std::int32_t> remoteModelVersion;

    KovalinApiResponse(bool update, std::optional<std::string> url, std::optional<std::int32_t> version)
        : shouldUpdate(update)
        , remoteModelUrl(std::move(url))
        , remoteModelVersion(version)
    {
    }
};

} // namespace vole::learned_search
