#include "kits/core/default/OutboxFixture.h"

namespace kovalin::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// An outbox that takes nothing.
class OutboxRefusal : public OutboxFixture {
protected:
    OutboxRefusal() { answer(ScriptedAnswer::withStatus(200)); }

    void openRefusing()
    {
        auto refusing = options();
        refusing.beginsRefusing = true;
        outbox.emplace(refusing);
    }
};

TEST_F(OutboxRefusal, ForgetsEverythingAndTakesNothing)
{
    open();
    add({"a", "b"});
    write();
    add({"c"});
    outbox->eraseAndRefuse();
    add({"d", "e", "f", "g", "h"});
    settle();
    EXPECT_THAT(onDisk(), IsEmpty());
    EXPECT_THAT(delays.pending(), IsEmpty());
    advance(1h);
    EXPECT_THAT(posted(), IsEmpty());
    close();
    EXPECT_THAT(onDisk(), IsEmpty());
    EXPECT_EQ(storedAt(path()).dropped, 0);
}

TEST_F(OutboxRefusal, EndsWhenItAcceptsAgain)
{
    open();
    outbox->eraseAndRefuse();
    add({"a"});
    outbox->accept();
    add({"b"});
    settle();
    advance(30s);
    EXPECT_THAT(batch(1).entries, ElementsAre("b"));
    EXPECT_EQ(batch(1).dropped, 0);
}

TEST_F(OutboxRefusal, MayBeAskedForTwice)
{
    open();
    outbox->eraseAndRefuse();
    outbox->eraseAndRefuse();
    add({"a"});
    outbox->accept();
    outbox->accept();
    add({"b"});
    write();
    EXPECT_THAT(onDisk(), ElementsAre("b"));
}

TEST_F(OutboxRefusal, FromTheBeginningPostsNothingThatAnEarlierRunLeft)
{
    QUrl nowhere(QStringLiteral("http://127.0.0.1:9/"));
    auto unreachable = options();
    unreachable.request = [nowhere](const kits::OutboxBatch&) {
        return platform::UrlRequest{.url = nowhere};
    };
    outbox.emplace(unreachable);
    add({"a", "b", "c", "d", "e", "f"}); // more than a batch, which would leave at once
    close();
    ASSERT_EQ(onDisk().size(), 6U);
    openRefusing();
    add({"g"});
    settle();
    EXPECT_THAT(onDisk(), IsEmpty());
    advance(1h);
    EXPECT_THAT(posted(), IsEmpty());
    outbox->accept();
    add({"h"});
    settle();
    advance(30s);
    EXPECT_THAT(batch(1).entries, ElementsAre("h"));
}

TEST_F(OutboxRefusal, FromTheBeginningKeepsWhatIsAddedOnceItAccepts)
{
    openRefusing();
    outbox->accept();
    add({"a"});
    write();
    EXPECT_THAT(onDisk(), ElementsAre("a"));
}

TEST_F(OutboxRefusal, MakesNoFileWhereThereIsNone)
{
    openRefusing();
    add({"a"});
    settle();
    close();
    EXPECT_FALSE(QFile::exists(path()));
}

} // namespace
} // namespace kovalin::test
