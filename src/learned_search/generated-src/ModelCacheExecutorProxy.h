#pragma once

#include "learned_search/ModelCacheExecutor.h"
#include "learned_search/generated-src/CacheHandle.h"
#include "learned_search/generated-src/QXNativeModelCacheExecutor.h"

#include <memory>
#include <string>

namespace djinni {

/// The platform's executor as the native core sees it. Calls it on the calling thread; what it throws passes through as it is.
class ModelCacheExecutorProxy final : public vole::learned_search::ModelCacheExecutor {
public:
    ModelCacheExecutorProxy(const IdentityCache::Enrolment& enrolment,
                            const std::shared_ptr<QXNativeModelCacheExecutor>& platformObject);

    [[nodiscard]] vole::learned_search::ModelMetaData getCachedModelMetaData(const std::string& modelName) override;
    [[nodiscard]] bool setCachedModelMetaData(const std::string& modelName,
                                              const vole::learned_search::ModelMetaData& record) override;

    [[nodiscard]] const std::shared_ptr<QXNativeModelCacheExecutor>& platformObject() const { return _handle.object(); }

private:
    PlatformHandle<ModelCacheExecutorProxy, QXNativeModelCacheExecutor> _handle;
};

} // namespace djinni
