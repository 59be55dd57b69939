#pragma once

#include "kovalin-backend/ContentFolder.h"
#include "kovalin-backend/Endpoints.h"
#include "kovalin-backend/accounts/Grants.h"

#include <memory>

namespace kovalin::backend {

/// Adds what links accounts: OAuth 2.0 for native programs, with PKCE (RFC 6749, 7009, 7636, 8252).
///
/// - `GET /accounts/oauth2/authorize`: a page to choose an account of the content folder and to agree. With "auto" in the query,
///   "approve", "deny" or "approve-without-scope" (all but the avatar), it redirects at once; "account" is the account's id,
///   else it is the first one.
/// - `POST /accounts/oauth2/token`: tokens for a code, or new ones for a refresh token. 400 with {"error":…} otherwise.
/// - `POST /accounts/oauth2/revoke`: ends what was granted; 200 also for a token that isn't known.
/// - `POST /control/expire-tokens`: ends all access tokens; 204.
void addOAuthEndpoints(Endpoints& endpoints, const std::shared_ptr<const ContentFolder>& content,
                       const std::shared_ptr<Grants>& grants);

} // namespace kovalin::backend
