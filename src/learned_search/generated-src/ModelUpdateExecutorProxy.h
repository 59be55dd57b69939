#pragma once

#include "learned_search/ModelUpdateExecutor.h"
#include "learned_search/generated-src/CacheHandle.h"
#include "learned_search/generated-src/QXNativeModelUpdateExecutor.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace djinni {

/// The platform's executor as the native core sees it. Calls it on the calling thread; what it throws passes through as it is.
class ModelUpdateExecutorProxy final : public vole::learned_search::ModelUpdateExecutor {
public:
    ModelUpdateExecutorProxy(const IdentityCache::Enrolment& enrolment,
                             const std::shared_ptr<QXNativeModelUpdateExecutor>& platformObject);

    [[nodiscard]] std::optional<vole::learned_search::KovalinApiResponse>
    getRemoteModelStatus(const std::string& modelName, std::optional<std::int32_t> cachedVersion) override;
    [[nodiscard]] vole::learned_search::ModelMetaData
    downloadModel(const std::string& modelName, const vole::learned_search::ModelMetaData& remoteModel) override;

    [[nodiscard]] const std::shared_ptr<QXNativeModelUpdateExecutor>& platformObject() const
    {
        return _handle.object();
    }

private:
    PlatformHandle<ModelUpdateExecutorProxy, QXNativeModelUpdateExecutor> _handle;
};

} // namespace djinni
