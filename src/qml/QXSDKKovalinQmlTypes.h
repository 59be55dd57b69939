#pragma once

#include "QXSDKKovalinKit/Export.h"

/// Registers the types of the QML module "QXSDKKovalinKit", which is what the module's plugin does: for a host that is linked
/// with the library anyway, or with a static one, and so needs neither plugin nor import path. Once or more often, before QML
/// that imports the module is loaded. Any thread: engines load plugins on one of their own.
QXSDKKOVALINKIT_EXPORT void QXSDKKovalinRegisterQmlTypes();
