#pragma once

#include "kovalin_learned_search/Export.h"
#include "learned_search/ModelMetaData.h"

#include <string>

namespace vole::learned_search {

/// The local record of which model is cached; implemented by the platform. Called on the thread that calls the coordinator.
class KOVALIN_LEARNED_SEARCH_EXPORT ModelCacheExecutor {
public:
    virtual ~ModelCacheExecutor();

    /// The record of the cached model. A failure is a record with a status other than success.
    [[nodiscard]] virtual ModelMetaData getCachedModelMetaData(const std::string& modelName) = 0;

    /// Replaces the record; whether it was stored.
    [[nodiscard]] virtual bool setCachedModelMetaData(const std::string& modelName, const ModelMetaData& record) = 0;
};

} // namespace vole::learned_search
