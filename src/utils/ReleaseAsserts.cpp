#include "utils/ReleaseAsserts.h"

#include <fmt/format.h>

#include <atomic>

namespace vole {

namespace {

std::atomic<bool> gReleaseAssertsEnabled{false};

} // namespace

void enableReleaseAsserts()
{
    gReleaseAssertsEnabled.store(true);
}

bool releaseAssertsEnabled()
{
    return gReleaseAssertsEnabled.load();
}

std::string detail::assertMessage(const std::string& message, const char* condition)
{
    return message.empty() ? fmt::format("{} failed", condition)
                           : fmt::format("{}: condition {} failed", message, condition);
}

} // namespace vole
