#include "utils/AssertionFailure.h"
#include "utils/ReleaseAsserts.h"
#include "utils/platform/JvmUtils.h"

namespace vole::utils::platform {

namespace {

// The lines are named by hand so that reports of any version can be told apart and compared.
void* nothingOrStop(int line, const char* function)
{
    if (releaseAssertsEnabled()) {
        const auto text = detail::assertMessage("not supposed to be called for non-android", "false");
        detail::failAssertion(text.c_str(), "utils/platform/JvmUtils_stub", line, function);
    }
    return nullptr;
}

} // namespace

void attachThreadIfNeeded(const char*) {}

void attachJni(const char*) {}

void detachJni() {}

void* getJvm()
{
    return nothingOrStop(14, "getJvm");
}

void* getEnv()
{
    return nothingOrStop(19, "getEnv");
}

} // namespace vole::utils::platform
