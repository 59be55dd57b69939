#pragma once

/// What a build that runs inside a Java virtual machine does to its threads. This build does none of it.
namespace vole::utils::platform {

/// No effect. `name` ends with a zero.
void attachThreadIfNeeded(const char* name);
void attachJni(const char* name);

/// No effect.
void detachJni();

/// Null. With release assertions enabled a call stops the program, since whoever calls takes this for another build.
[[nodiscard]] void* getJvm();
[[nodiscard]] void* getEnv();

} // namespace vole::utils::platform
