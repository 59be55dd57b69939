#pragma once

#include "kovalin_learned_search/Export.h"
#include "learned_search/KovalinApiResponse.h"
#include "learned_search/ModelMetaData.h"

#include <cstdint>
#include <optional>
#include <string>

namespace vole::learned_search {

/// The server's side of model delivery; implemented by the platform. Called on the thread that calls the coordinator, which
/// may be blocked for as long as the network takes.
class KOVALIN_LEARNED_SEARCH_EXPORT ModelUpdateExecutor {
public:
    virtual ~ModelUpdateExecutor();

    /// Asks whether there is a newer model than `cachedVersion`, which is absent where none is cached. The server decides
    /// what newer means. No answer counts as a refusal.
    [[nodiscard]] virtual std::optional<KovalinApiResponse>
    getRemoteModelStatus(const std::string& modelName, std::optional<std::int32_t> cachedVersion) = 0;

    /// Fetches and stores a model; the record of what was stored, with its local path as the URL. A failure is a record
    /// with a status other than success.
    [[nodiscard]] virtual ModelMetaData downloadModel(const std::string& modelName,
                                                      const ModelMetaData& remoteModel) = 0;
};

} // namespace vole::learned_search
