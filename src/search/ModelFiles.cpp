#include "search/ModelFiles.h"

#include "platform/foundation/CachesDirectory.h"

QString pathInCachesDirectory(const QString& fileName)
{
    static const QString directory = kovalin::platform::cachesDirectory();
    return directory + u'/' + fileName;
}
