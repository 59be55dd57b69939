#pragma once

#include "kovalin-backend/ContentFolder.h"
#include "kovalin-backend/Endpoints.h"
#include "kovalin-backend/accounts/Grants.h"

#include <QtCore/QUrl>

#include <memory>

namespace kovalin::backend {

/// Adds `POST /api/graphql`, which answers the three documents that clients send, in the name of the account that the access token
/// is of; `baseUrl` begins the addresses in answers.
///
/// - 401 without a token that is good, 400 for a body that is no request.
/// - 200 with {"errors":[{"errorType":"ValidationError","message":…}]} for any other document, for variables that don't fit, and
///   for a query about the account itself that the token has no scope for.
/// - An account without an avatar has neither that nor packs. A user that isn't known is left out, and comes once however often
///   it is asked for.
void addGraphQLEndpoint(Endpoints& endpoints, const std::shared_ptr<const ContentFolder>& content,
                        const std::shared_ptr<const Grants>& grants, const QUrl& baseUrl);

} // namespace kovalin::backend
