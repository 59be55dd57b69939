#include "platform/foundation/Random.h"

#include "platform/foundation/SharedSlot.h"

#include <QtCore/QRandomGenerator>

#include <memory>
#include <utility>

namespace kovalin::platform {

namespace {

SharedSlot<const RandomSource>& installedSource()
{
    // Never destroyed: threads may still ask while the process ends.
    static auto& source = *new SharedSlot<const RandomSource>;
    return source;
}

} // namespace

quint32 arc4random()
{
    const auto source = installedSource().load();
    return source ? (*source)() : QRandomGenerator::system()->generate();
}

RandomSource setRandomSource(RandomSource source)
{
    const auto previous =
        installedSource().exchange(source ? std::make_shared<const RandomSource>(std::move(source)) : nullptr);
    return previous ? *previous : RandomSource();
}

} // namespace kovalin::platform
