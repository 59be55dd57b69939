#pragma once

#include "kovalin/model_build/ModelLimits.h"

#include <flatbuffers/flatbuffers.h>

namespace kovalin::cli {

class LearnedModel;

[[nodiscard]] ModelSize sizeOf(const LearnedModel& model);

/// The bytes of the model's file. The model must be within the limits, see `limitFault`.
[[nodiscard]] flatbuffers::DetachedBuffer fileOf(const LearnedModel& model);

} // namespace kovalin::cli
