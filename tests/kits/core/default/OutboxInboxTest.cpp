#include "kits/core/default/OutboxInbox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kovalin::kits {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> textsOf(const OutboxInbox::Content& content)
{
    std::vector<std::string> texts;
    for (const auto& entry : content.entries) {
        texts.push_back(entry.bytes.toStdString());
    }
    return texts;
}

TEST(OutboxInbox, AsksForSomebodyOnceUntilHeComes)
{
    OutboxInbox inbox(10, 1000);
    EXPECT_TRUE(inbox.add({1, "a"}));
    EXPECT_FALSE(inbox.add({2, "b"}));
    const auto content = inbox.take();
    EXPECT_THAT(textsOf(content), ElementsAre("a", "b"));
    EXPECT_EQ(content.entries.back().time, 2);
    EXPECT_THAT(inbox.take().entries, IsEmpty());
    EXPECT_TRUE(inbox.add({3, "c"}));
}

TEST(OutboxInbox, AsksAgainWhereNobodyComes)
{
    OutboxInbox inbox(10, 1000);
    EXPECT_TRUE(inbox.add({1, "a"}));
    inbox.nobodyComes();
    EXPECT_TRUE(inbox.add({2, "b"}));
    EXPECT_THAT(textsOf(inbox.take()), ElementsAre("a", "b"));
}

TEST(OutboxInbox, DropsTheOldestBeyondItsLimits)
{
    OutboxInbox inbox(3, 10);
    for (const char* const text : {"1", "2", "3", "4"}) {
        static_cast<void>(inbox.add({0, text}));
    }
    static_cast<void>(inbox.add({0, "123456789"}));
    auto content = inbox.take();
    EXPECT_THAT(textsOf(content), ElementsAre("4", "123456789"));
    EXPECT_EQ(content.dropped, 3U);

    static_cast<void>(inbox.add({0, "1"}));
    static_cast<void>(inbox.add({0, "12345678901"}));
    content = inbox.take();
    EXPECT_THAT(textsOf(content), ElementsAre("1"));
    EXPECT_EQ(content.dropped, 1U);
}

TEST(OutboxInbox, TellsOfAnErasureBeforeWhatCameAfterIt)
{
    OutboxInbox inbox(2, 1000);
    static_cast<void>(inbox.add({0, "1"}));
    static_cast<void>(inbox.add({0, "2"}));
    static_cast<void>(inbox.add({0, "3"}));
    EXPECT_FALSE(inbox.erase());
    static_cast<void>(inbox.add({0, "4"}));
    const auto content = inbox.take();
    EXPECT_TRUE(content.isErased);
    EXPECT_EQ(content.dropped, 0U);
    EXPECT_THAT(textsOf(content), ElementsAre("4"));
    EXPECT_FALSE(inbox.take().isErased);
    EXPECT_TRUE(inbox.erase());
}

TEST(OutboxInbox, TakesNothingWhileItRefuses)
{
    OutboxInbox inbox(10, 1000);
    static_cast<void>(inbox.add({0, "1"}));
    EXPECT_FALSE(inbox.eraseAndRefuse()); // somebody is on the way already
    EXPECT_TRUE(inbox.isErased());
    EXPECT_FALSE(inbox.add({0, "2"}));
    auto content = inbox.take();
    EXPECT_TRUE(content.isErased);
    EXPECT_FALSE(inbox.isErased());
    EXPECT_THAT(textsOf(content), IsEmpty());
    EXPECT_FALSE(inbox.add({0, "3"})); // nobody has to be sent for nothing
    EXPECT_FALSE(inbox.add({0, QByteArray(1001, 'x')}));
    content = inbox.take();
    EXPECT_FALSE(content.isErased);
    EXPECT_THAT(textsOf(content), IsEmpty());
    EXPECT_EQ(content.dropped, 0U);
    inbox.accept();
    EXPECT_TRUE(inbox.add({0, "4"}));
    EXPECT_THAT(textsOf(inbox.take()), ElementsAre("4"));
    EXPECT_TRUE(inbox.eraseAndRefuse());
}

} // namespace
} // namespace kovalin::kits
