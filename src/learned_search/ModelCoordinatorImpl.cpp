#include "learned_search/ModelCoordinatorImpl.h"

#include "learned_search/ModelCacheExecutor.h"
#include "learned_search/ModelFileBuffer.h"
#include "learned_search/ModelUpdateExecutor.h"

#include <utility>

namespace vole::learned_search {

ModelCoordinator::~ModelCoordinator() = default;

std::shared_ptr<ModelCoordinator>
ModelCoordinator::modelCoordinatorInstance(std::shared_ptr<ModelCacheExecutor> cacheExecutor,
                                           std::shared_ptr<ModelUpdateExecutor> updateExecutor)
{
    return std::make_shared<ModelCoordinatorImpl>(std::move(cacheExecutor), std::move(updateExecutor));
}

ModelCoordinatorImpl::ModelCoordinatorImpl(std::shared_ptr<ModelCacheExecutor> cacheExecutor,
                                           std::shared_ptr<ModelUpdateExecutor> updateExecutor)
    : _cacheExecutor(std::move(cacheExecutor))
    , _updateExecutor(std::move(updateExecutor))
{
}

std::shared_ptr<ModelFileBuffer> ModelCoordinatorImpl::getModel(const std::string& modelName)
{
    // A record of a failure has no path, and without a path the buffer is invalid: its status needs no look.
    const auto cached = _cacheExecutor->getCachedModelMetaData(modelName);
    return ModelFileBuffer::modelFileBufferInstanceWithPath(cached.modelUrl);
}

bool ModelCoordinatorImpl::updateLocalModel(const std::string& modelName)
{
    const auto cached = _cacheExecutor->getCachedModelMetaData(modelName);
    const auto response = _updateExecutor->getRemoteModelStatus(modelName, cached.modelVersion);
    if (!response || !response->shouldUpdate || !response->remoteModelUrl || !response->remoteModelVersion) {
        return false;
    }
    const ModelMetaData remote(response->remoteModelUrl, response->remoteModelVersion, StatusEnums::SUCCESS);
    const auto stored = _updateExecutor->downloadModel(modelName, remote);
    if (stored.statusCode != StatusEnums::SUCCESS) {
        return false;
    }
    return _cacheExecutor->setCachedModelMetaData(modelName, stored);
}

} // namespace vole::learned_search
