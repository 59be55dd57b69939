#pragma once

#include "kovalin-backend/Answer.h"
#include "kovalin-backend/accounts/AuthorizationRequest.h"
#include "kovalin-backend/accounts/FormValues.h"
#include "kovalin-backend/accounts/People.h"

#include <QtCore/QList>

namespace kovalin::backend {

/// The page on which somebody chooses an account and says yes or no. What is chosen comes back to the page's own address, with
/// `values` again and beside them "account" and "auto". Any thread.
[[nodiscard]] Answer authorizationPage(const AuthorizationRequest& request, const FormValues& values,
                                       const QList<Account>& accounts);

} // namespace kovalin::backend
