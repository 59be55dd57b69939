#include "content/ContentLog.h"

Q_LOGGING_CATEGORY(kovalinContent, "kovalin.content")
