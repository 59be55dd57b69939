#pragma once

#include "learned_search/StatusEnums.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace vole::learned_search {

/// What is known of one model. A plain value.
struct ModelMetaData {
    /// Where the model is: in a record of the cache the path of a local file, in a record for `downloadModel` the remote
    /// location. Absent where there is none.
    std::optional<std::string> modelUrl;
    /// Absent where there is no model, or where its version isn't known.
    std::optional<std::int32_t> modelVersion;
    /// How the operation that made this record ended.
    StatusEnums statusCode;

    ModelMetaData(std::optional<std::string> url, std::optional<std::int32_t> version, StatusEnums status)
        : modelUrl(std::move(url))
        , modelVersion(version)
        , statusCode(status)
    {
    }
};

} // namespace vole::learned_search
