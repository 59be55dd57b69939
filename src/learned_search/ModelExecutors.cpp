// The virtual tables of the interfaces that the platform implements, in one place for all libraries that share them.
#include "learned_search/ModelCacheExecutor.h"
#include "learned_search/ModelUpdateExecutor.h"

namespace vole::learned_search {

ModelCacheExecutor::~ModelCacheExecutor() = default;

ModelUpdateExecutor::~ModelUpdateExecutor() = default;

} // namespace vole::learned_search
