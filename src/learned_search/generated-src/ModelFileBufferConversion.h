#pragma once

#include "learned_search/ModelFileBuffer.h"
#include "learned_search/generated-src/QXNativeModelFileBuffer.h"
#include "learned_search/generated-src/WrapperConversion.h"

namespace djinni {

using ModelFileBufferConversion = WrapperConversion<QXNativeModelFileBuffer, vole::learned_search::ModelFileBuffer>;

} // namespace djinni
