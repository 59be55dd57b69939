#pragma once

#include "learned_search/generated-src/ModelUpdateExecutorProxy.h"
#include "learned_search/generated-src/ProxyConversion.h"

namespace djinni {

using ModelUpdateExecutorConversion =
    ProxyConversion<ModelUpdateExecutorProxy, vole::learned_search::ModelUpdateExecutor, QXNativeModelUpdateExecutor>;

} // namespace djinni
