#pragma once

#include "kovalin-backend/ContentFolder.h"
#include "kovalin-backend/Endpoints.h"

#include <QtCore/QUrl>

#include <memory>

namespace kovalin::backend {

/// Adds what is served from the content folder; `baseUrl` begins the addresses in answers.
///
/// - `GET /content/models/<name>?client_cached_version=<n>`: {"shouldUpdate":…,"modelUrl":…,"modelVersion":…},
///   whether there is a newer version than the client's, and the newest with its address; these two are missing where
///   there is none. A client's version that is absent, negative or no number is none at all.
/// - `GET /content/models/<name>/<version>`: the model, byte for byte.
/// - `GET /api/configs`: the dynamic configuration.
void addContentEndpoints(Endpoints& endpoints, const std::shared_ptr<const ContentFolder>& content,
                         const QUrl& baseUrl);

} // namespace kovalin::backend
