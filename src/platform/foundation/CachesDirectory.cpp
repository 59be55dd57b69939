#include "platform/foundation/CachesDirectory.h"

#include "platform/foundation/SharedSlot.h"

#include <QtCore/QDir>
#include <QtCore/QStandardPaths>

namespace kovalin::platform {

namespace {

SharedSlot<const QString>& hostsDirectory()
{
    // Never destroyed: threads may still store while the process ends.
    static auto& directory = *new SharedSlot<const QString>;
    return directory;
}

} // namespace

QString cachesDirectory()
{
    const auto directory = hostsDirectory().load();
    return directory ? *directory : QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
}

void setCachesDirectory(const QString& path)
{
    hostsDirectory().store(path.isEmpty() ? nullptr : std::make_shared<const QString>(QDir::cleanPath(path)));
}

} // namespace kovalin::platform
