#pragma once

#include <QtCore/QtGlobal>

#include <functional>

namespace kovalin::platform {

/// A number from 0 to 2^32 - 1, each as likely as any other, by the installed source. Any thread.
[[nodiscard]] quint32 arc4random();

/// Gives such numbers. Called from any thread, on several at once.
using RandomSource = std::function<quint32()>;

/// Installs `source` for the whole process; an empty one brings back the system's, which is installed at the start. Gives what
/// was installed before, empty for the system's. Any thread; a call under way in another thread ends on the source that it
/// began with.
RandomSource setRandomSource(RandomSource source);

} // namespace kovalin::platform
