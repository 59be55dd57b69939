#pragma once

#include "QXSDKKovalinKit/Export.h"

#include <QtCore/QString>

/// The scope that every query about the user's own data needs: an address at the authentication service of the client setup as it
/// is now. Any thread.
[[nodiscard]] QXSDKKOVALINKIT_EXPORT QString kQXSDKKovalinClientRequiredScope();
