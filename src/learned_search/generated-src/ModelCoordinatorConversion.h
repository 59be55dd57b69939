#pragma once

#include "learned_search/ModelCoordinator.h"
#include "learned_search/generated-src/QXNativeModelCoordinator.h"
#include "learned_search/generated-src/WrapperConversion.h"

namespace djinni {

using ModelCoordinatorConversion = WrapperConversion<QXNativeModelCoordinator, vole::learned_search::ModelCoordinator>;

} // namespace djinni
