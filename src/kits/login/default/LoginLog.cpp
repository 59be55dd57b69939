#include "kits/login/default/LoginLog.h"

Q_LOGGING_CATEGORY(kovalinLogin, "kovalin.login")
