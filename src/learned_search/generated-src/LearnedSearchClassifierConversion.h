#pragma once

#include "learned_search/LearnedSearchClassifier.h"
#include "learned_search/generated-src/QXNativeLearnedSearchClassifier.h"
#include "learned_search/generated-src/WrapperConversion.h"

namespace djinni {

using LearnedSearchClassifierConversion =
    WrapperConversion<QXNativeLearnedSearchClassifier, vole::learned_search::LearnedSearchClassifier>;

} // namespace djinni
