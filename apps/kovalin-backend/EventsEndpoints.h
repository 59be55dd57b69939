#pragma once

#include "kovalin-backend/BackendEvents.h"
#include "kovalin-backend/Endpoints.h"
#include "kovalin-backend/EventsRecord.h"

#include <memory>

namespace kovalin::backend {

/// Adds what takes and shows analytics events.
///
/// - `POST /api/events`: 204 when the batch was taken, 400 with one line of what is wrong with it otherwise; then
///   nothing of it is taken. Wrong is what `readEventBatch` can't read, a "batch_id" that is no UUID, and an event
///   without an id.
/// - `GET /control/events`: what was taken, see `TakenEvents::toJson`.
void addEventsEndpoints(Endpoints& endpoints, const std::shared_ptr<EventsRecord>& record, const BackendEvents& events);

} // namespace kovalin::backend
