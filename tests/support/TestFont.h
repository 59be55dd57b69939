#pragma once

#include <QtCore/QString>

namespace kovalin::test {

/// Makes one font out of files, regular and bold, the application's: not hinted, in shades of grey, so that text looks
/// the same on each machine. Main thread only; for the rest of the process. Returns what is missing; empty if nothing
/// is.
[[nodiscard]] QString installTestFont();

} // namespace kovalin::test
