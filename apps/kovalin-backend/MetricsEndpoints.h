#pragma once

#include "kovalin-backend/BackendEvents.h"
#include "kovalin-backend/Endpoints.h"
#include "kovalin-backend/MetricsRecord.h"

#include <memory>

namespace kovalin::backend {

/// Adds what takes and shows operational metrics.
///
/// - `POST /api/metrics`: 204 when the batch was taken, 400 with one line of what is wrong with it otherwise; then
///   nothing of it is taken.
/// - `GET /control/metrics`: what was taken, see `TakenMetrics::toJson`.
void addMetricsEndpoints(Endpoints& endpoints, const std::shared_ptr<MetricsRecord>& record,
                         const BackendEvents& events);

} // namespace kovalin::backend
