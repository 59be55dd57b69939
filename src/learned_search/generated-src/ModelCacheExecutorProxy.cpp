#include "learned_search/generated-src/ModelCacheExecutorProxy.h"

#include "learned_search/generated-src/ModelMetaDataConversion.h"
#include "learned_search/generated-src/NumberConversion.h"
#include "learned_search/generated-src/StringConversion.h"

namespace djinni {

ModelCacheExecutorProxy::ModelCacheExecutorProxy(const IdentityCache::Enrolment& enrolment,
                                                 const std::shared_ptr<QXNativeModelCacheExecutor>& platformObject)
    : _handle(enrolment, platformObject)
{
}

vole::learned_search::ModelMetaData ModelCacheExecutorProxy::getCachedModelMetaData(const std::string& modelName)
{
    return ModelMetaDataConversion::toCpp(_handle->getCachedModelMetaData(StringConversion::fromCpp(modelName)));
}

bool ModelCacheExecutorProxy::setCachedModelMetaData(const std::string& modelName,
                                                     const vole::learned_search::ModelMetaData& record)
{
    return BoolConversion::toCpp(_handle->setCachedModelMetaData(StringConversion::fromCpp(modelName),
                                                                 ModelMetaDataConversion::fromCpp(record)));
}

} // namespace djinni
