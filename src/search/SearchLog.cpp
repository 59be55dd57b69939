#include "search/SearchLog.h"

Q_LOGGING_CATEGORY(kovalinSearch, "kovalin.search")
