#pragma once

#include "platform/foundation/Random.h"

#include <functional>
#include <utility>

namespace kovalin::test {

/// A source of chance that a test writes. It is the installed source from its making to its end, which brings back what was
/// installed before; so nested ones end in the reverse order.
class ScriptedRandom final {
public:
    explicit ScriptedRandom(platform::RandomSource source)
        : _previous(platform::setRandomSource(std::move(source)))
    {
    }
    ~ScriptedRandom() { platform::setRandomSource(_previous); }
    ScriptedRandom(const ScriptedRandom&) = delete;
    ScriptedRandom& operator=(const ScriptedRandom&) = delete;

private:
    platform::RandomSource _previous;
};

} // namespace kovalin::test
