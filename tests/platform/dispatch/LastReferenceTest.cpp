#include "platform/dispatch/LastReference.h"

#include "support/WaitFor.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

using namespace kovalin::platform;
using kovalin::test::waitFor;

namespace {

/// Tells on which thread it ends.
class Large final {
public:
    explicit Large(std::atomic<std::thread::id>& end)
        : _end(end)
    {
    }
    Large(const Large&) = delete;
    Large& operator=(const Large&) = delete;
    ~Large() { _end = std::this_thread::get_id(); }

    int value = 7;

private:
    std::atomic<std::thread::id>& _end;
};

class LastReference : public testing::Test {
protected:
    /// What the object writes to mustn't go before it.
    ~LastReference() override
    {
        large.reset();
        EXPECT_TRUE(waitFor([this] { return end.load() != std::thread::id(); }));
    }

    std::atomic<std::thread::id> end = std::thread::id();
    std::shared_ptr<Large> large = endingOffTheMainThread(std::make_unique<Large>(end));
};

TEST_F(LastReference, EndsTheObjectOnTheGlobalQueueWhenItGoesOnTheMainThread)
{
    large.reset();
    ASSERT_TRUE(waitFor([this] { return end.load() != std::thread::id(); }));
    EXPECT_NE(end.load(), std::this_thread::get_id());
}

TEST_F(LastReference, EndsTheObjectRightWhereItGoesElsewhere)
{
    std::thread([this] {
        large.reset();
        EXPECT_EQ(end.load(), std::this_thread::get_id());
    }).join();
}

TEST_F(LastReference, LeavesTheObjectAloneWhileThereIsAnother)
{
    const auto another = large;
    large.reset();
    EXPECT_EQ(end.load(), std::thread::id());
    EXPECT_EQ(another->value, 7);
}

} // namespace
