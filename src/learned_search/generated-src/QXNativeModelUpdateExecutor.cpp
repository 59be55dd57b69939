#include "learned_search/generated-src/QXNativeModelUpdateExecutor.h"

QXNativeModelUpdateExecutor::~QXNativeModelUpdateExecutor() = default;
