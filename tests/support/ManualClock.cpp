#include "support/ManualClock.h"

#include "platform/foundation/Clock.h"

#include <atomic>

namespace kovalin::test {

// Apart from the ManualClock, since a reader in another thread may hold it a moment longer.
class ManualClock::Hand final : public platform::Clock {
public:
    [[nodiscard]] std::chrono::microseconds timeSinceEpoch() const override
    {
        return std::chrono::milliseconds(_milliseconds.load());
    }

    void set(std::chrono::milliseconds sinceEpoch) { _milliseconds.store(sinceEpoch.count()); }
    void advance(std::chrono::milliseconds duration) { _milliseconds.fetch_add(duration.count()); }

private:
    std::atomic<std::chrono::milliseconds::rep> _milliseconds = 0;
};

ManualClock::ManualClock(std::chrono::milliseconds start)
    : _hand(std::make_shared<Hand>())
{
    _hand->set(start);
    _previous = platform::setClock(_hand);
}

ManualClock::~ManualClock()
{
    platform::setClock(_previous);
}

void ManualClock::advance(std::chrono::milliseconds duration)
{
    _hand->advance(duration);
}

void ManualClock::set(std::chrono::milliseconds sinceEpoch)
{
    _hand->set(sinceEpoch);
}

} // namespace kovalin::test
