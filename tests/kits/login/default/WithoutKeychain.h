#pragma once

#include <QtCore/QtGlobal>

namespace kovalin::test {

/// Makes sure, before the first use of the keychain, that this machine's own isn't reached.
inline void leaveKeychainUnreachable()
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
}

} // namespace kovalin::test
