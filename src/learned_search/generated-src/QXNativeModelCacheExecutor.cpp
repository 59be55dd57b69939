#include "learned_search/generated-src/QXNativeModelCacheExecutor.h"

QXNativeModelCacheExecutor::~QXNativeModelCacheExecutor() = default;
