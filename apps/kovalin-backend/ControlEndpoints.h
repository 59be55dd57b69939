#pragma once

#include "kovalin-backend/AnswerRule.h"
#include "kovalin-backend/Endpoints.h"

#include <functional>

namespace kovalin::backend {

/// Adds `POST /control/answers`, whose body is one "PATH RULE": 204, or 400 with one line of what is wrong with it.
void addControlEndpoints(Endpoints& endpoints, std::function<void(const PathRule&)> setAnswer);

} // namespace kovalin::backend
