#pragma once

#include <QtCore/QLoggingCategory>

/// What goes wrong with the link to the account. No line holds anything of a token, a code or a verifier.
Q_DECLARE_LOGGING_CATEGORY(kovalinLogin)
