#pragma once

#include "learned_search/ModelCoordinator.h"

#include <memory>
#include <string>

namespace vole::learned_search {

class ModelCoordinatorImpl final : public ModelCoordinator {
public:
    ModelCoordinatorImpl(std::shared_ptr<ModelCacheExecutor> cacheExecutor,
                         std::shared_ptr<ModelUpdateExecutor> updateExecutor);

    [[nodiscard]] std::shared_ptr<ModelFileBuffer> getModel(const std::string& modelName) override;
    [[nodiscard]] bool updateLocalModel(const std::string& modelName) override;

private:
    std::shared_ptr<ModelCacheExecutor> _cacheExecutor;
    std::shared_ptr<ModelUpdateExecutor> _updateExecutor;
};

} // namespace vole::learned_search
