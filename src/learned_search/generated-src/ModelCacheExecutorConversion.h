#pragma once

#include "learned_search/generated-src/ModelCacheExecutorProxy.h"
#include "learned_search/generated-src/ProxyConversion.h"

namespace djinni {

using ModelCacheExecutorConversion =
    ProxyConversion<ModelCacheExecutorProxy, vole::learned_search::ModelCacheExecutor, QXNativeModelCacheExecutor>;

} // namespace djinni
