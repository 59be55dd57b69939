#pragma once

#include "kovalin-backend/ContentFolder.h"
#include "kovalin-backend/Endpoints.h"
#include "kovalin-backend/PictureCache.h"

#include <memory>

namespace kovalin::backend {

/// Adds the pictures, which are drawn when they are asked for; an avatar id may be any text.
///
/// - `GET /stickers/<template>/<avatar>.png` and, for templates for two, `/stickers/<template>/<avatar>/<friend>.png`
/// - `GET /avatars/<avatar>.png`: the head
///
/// With "size" in the query it is so many pixels wide and high, else 320; a size out of range counts as the nearest one in it. 404
/// for an unknown template, one for another number of people, and a friend whose place ("%s") wasn't filled in.
void addPictureEndpoints(Endpoints& endpoints, const std::shared_ptr<const ContentFolder>& content,
                         const std::shared_ptr<PictureCache>& cache);

} // namespace kovalin::backend
