#include "platform/foundation/SharedSlot.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <latch>
#include <thread>
#include <vector>

using kovalin::platform::SharedSlot;

TEST(SharedSlot, IsNullUntilSomethingIsStored)
{
    SharedSlot<const int> slot;
    EXPECT_EQ(slot.load(), nullptr);
    slot.store(std::make_shared<const int>(1));
    EXPECT_EQ(*slot.load(), 1);
    slot.store(nullptr);
    EXPECT_EQ(slot.load(), nullptr);
}

TEST(SharedSlot, GivesBackWhatItHeldBefore)
{
    const auto first = std::make_shared<int>(1);
    SharedSlot<int> slot(first);
    EXPECT_EQ(slot.exchange(std::make_shared<int>(2)), first);
    EXPECT_EQ(*slot.load(), 2);
}

TEST(SharedSlot, LetsAReaderKeepTheOldObject)
{
    auto old = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = old;
    SharedSlot<int> slot(std::move(old));
    auto reader = slot.load();
    slot.store(nullptr);
    EXPECT_EQ(*reader, 1);
    reader.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(SharedSlot, ShowsReadersWholeObjectsOnly)
{
    using Numbers = std::array<int, 64>;
    const auto filled = [](int number) {
        auto numbers = std::make_shared<Numbers>();
        numbers->fill(number);
        return numbers;
    };
    SharedSlot<const Numbers> slot(filled(0));
    std::atomic<bool> stop = false;
    std::atomic<int> torn = 0;
    std::latch started(3);
    std::vector<std::thread> readers;
    for (int i = 0; i < 2; ++i) {
        readers.emplace_back([&] {
            started.arrive_and_wait();
            do {
                const auto numbers = slot.load();
                for (const int number : *numbers) {
                    torn += number == numbers->front() ? 0 : 1;
                }
            } while (!stop);
        });
    }
    started.arrive_and_wait();
    for (int number = 1; number < 2000; ++number) {
        slot.store(filled(number));
    }
    stop = true;
    for (auto& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(torn, 0);
}
