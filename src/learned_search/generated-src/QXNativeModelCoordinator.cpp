#include "learned_search/generated-src/QXNativeModelCoordinator.h"

#include "learned_search/ModelCoordinator.h"
#include "learned_search/generated-src/Exceptions.h"
#include "learned_search/generated-src/ModelCacheExecutorConversion.h"
#include "learned_search/generated-src/ModelCoordinatorConversion.h"
#include "learned_search/generated-src/ModelFileBufferConversion.h"
#include "learned_search/generated-src/ModelUpdateExecutorConversion.h"
#include "learned_search/generated-src/NumberConversion.h"
#include "learned_search/generated-src/StringConversion.h"

using namespace djinni;
using vole::learned_search::ModelCoordinator;

QXNativeModelCoordinator::QXNativeModelCoordinator(const IdentityCache::Enrolment& enrolment,
                                                   const std::shared_ptr<ModelCoordinator>& cpp)
    : _handle(enrolment, cpp)
{
}

std::shared_ptr<QXNativeModelCoordinator>
QXNativeModelCoordinator::modelCoordinatorInstance(const std::shared_ptr<QXNativeModelCacheExecutor>& cacheExecutor,
                                                   const std::shared_ptr<QXNativeModelUpdateExecutor>& updateExecutor)
{
    return guarded("QXNativeModelCoordinator modelCoordinatorInstance:updateExecutor:", [&] {
        return ModelCoordinatorConversion::fromCpp(ModelCoordinator::modelCoordinatorInstance(
            ModelCacheExecutorConversion::toCpp(cacheExecutor), ModelUpdateExecutorConversion::toCpp(updateExecutor)));
    });
}

std::shared_ptr<QXNativeModelFileBuffer> QXNativeModelCoordinator::getModel(const QString& modelName)
{
    return guarded("QXNativeModelCoordinator getModel:", [&] {
        return ModelFileBufferConversion::fromCpp(_handle->getModel(StringConversion::toCpp(modelName)));
    });
}

bool QXNativeModelCoordinator::updateLocalModel(const QString& modelName)
{
    return guarded("QXNativeModelCoordinator updateLocalModel:", [&] {
        return BoolConversion::fromCpp(_handle->updateLocalModel(StringConversion::toCpp(modelName)));
    });
}
