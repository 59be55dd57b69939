#include "picker/views/PickerLog.h"

Q_LOGGING_CATEGORY(kovalinPicker, "kovalin.picker")
