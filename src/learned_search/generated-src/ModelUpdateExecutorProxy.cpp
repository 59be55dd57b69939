#include "learned_search/generated-src/ModelUpdateExecutorProxy.h"

#include "learned_search/generated-src/KovalinApiResponseConversion.h"
#include "learned_search/generated-src/ModelMetaDataConversion.h"
#include "learned_search/generated-src/NumberConversion.h"
#include "learned_search/generated-src/OptionalConversion.h"
#include "learned_search/generated-src/StringConversion.h"

namespace djinni {

ModelUpdateExecutorProxy::ModelUpdateExecutorProxy(const IdentityCache::Enrolment& enrolment,
                                                   const std::shared_ptr<QXNativeModelUpdateExecutor>& platformObject)
    : _handle(enrolment, platformObject)
{
}

std::optional<vole::learned_search::KovalinApiResponse>
ModelUpdateExecutorProxy::getRemoteModelStatus(const std::string& modelName, std::optional<std::int32_t> cachedVersion)
{
    return OptionalRecordConversion<KovalinApiResponseConversion>::toCpp(_handle->getRemoteModelStatus(
        StringConversion::fromCpp(modelName), OptionalConversion<Int32Conversion>::fromCpp(cachedVersion)));
}

vole::learned_search::ModelMetaData
ModelUpdateExecutorProxy::downloadModel(const std::string& modelName,
                                        const vole::learned_search::ModelMetaData& remoteModel)
{
    return ModelMetaDataConversion::toCpp(
        _handle->downloadModel(StringConversion::fromCpp(modelName), ModelMetaDataConversion::fromCpp(remoteModel)));
}

} // namespace djinni
