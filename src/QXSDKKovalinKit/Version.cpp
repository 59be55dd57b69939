#include "QXSDKKovalinKit/Version.h"

const char* const QXSDKKovalinKitVersionString = QXSDKKOVALINKIT_VERSION_TEXT;
const double QXSDKKovalinKitVersionNumber = KOVALIN_VERSION_NUMBER;
