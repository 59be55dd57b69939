#pragma once

#include "kovalin_learned_search/Export.h"

#include <memory>
#include <string>

namespace vole::learned_search {

class ModelCacheExecutor;
class ModelFileBuffer;
class ModelUpdateExecutor;

/// Decides whether a model must be fetched, and opens the cached one. Any thread, synchronously on the caller's: an update
/// blocks through the whole request and download, so it has no place on a main thread. Two updates of one name at a time are
/// the caller's to avoid. What an executor throws ends the operation and passes through; the cached record is written last.
class KOVALIN_LEARNED_SEARCH_EXPORT ModelCoordinator {
public:
    virtual ~ModelCoordinator();

    /// A new coordinator at each call, which keeps both executors alive. Never null.
    [[nodiscard]] static std::shared_ptr<ModelCoordinator>
    modelCoordinatorInstance(std::shared_ptr<ModelCacheExecutor> cacheExecutor,
                             std::shared_ptr<ModelUpdateExecutor> updateExecutor);

    /// The cached model, mapped. Never null: where no usable file is cached, the buffer is one whose state is invalid.
    [[nodiscard]] virtual std::shared_ptr<ModelFileBuffer> getModel(const std::string& modelName) = 0;

    /// Fetches the server's model if it offers one. True: a new model was fetched and recorded. False: nothing was offered,
    /// or something failed; in both cases `getModel` opens what was cached before, unless writing the record failed half-way.
    [[nodiscard]] virtual bool updateLocalModel(const std::string& modelName) = 0;
};

} // namespace vole::learned_search
