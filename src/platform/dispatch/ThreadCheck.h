#pragma once

#include "platform/dispatch/SourceLocation.h"

namespace kovalin::platform {

/// Any thread. True on the main thread: the one that the application object lives on. Once that object is gone its last
/// thread still counts; before the first one no thread does.
[[nodiscard]] bool isMainThread();

/// Any thread. On any thread but the main one this is a clean stop, in every build type, with a line on standard error
/// that names the caller.
void assertOnMainThread(const SourceLocation& where = SourceLocation::current());

} // namespace kovalin::platform
