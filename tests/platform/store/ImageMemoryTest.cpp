#include "platform/store/ImageMemory.h"

#include "platform/store/StoreTesting.h"

#include <gtest/gtest.h>

#include <limits>

namespace kovalin::platform {
namespace {

using test::noise;

class ImageMemoryTest : public testing::Test {
protected:
    void store(const QString& key, qsizetype cost = 1) { memory.store(key, {noise(1), imageKey(key)}, cost); }

    bool isThere(const QString& key) { return memory.find(key).has_value(); }

    ImageMemory memory;
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    const QString c = QStringLiteral("c");
};

TEST_F(ImageMemoryTest, KeepsFiftyUntilALimitIsSet)
{
    for (int i = 0; i < 51; ++i) {
        store(QString::number(i));
    }
    EXPECT_FALSE(isThere(QStringLiteral("0")));
    for (int i = 1; i < 51; ++i) {
        EXPECT_TRUE(isThere(QString::number(i))) << i;
    }
}

TEST_F(ImageMemoryTest, DropsTheLeastRecentlyUsedFirst)
{
    memory.setCostLimit(2);
    store(a);
    store(b);
    EXPECT_TRUE(isThere(a));
    store(c);
    EXPECT_FALSE(isThere(b));
    EXPECT_TRUE(isThere(a));
    EXPECT_TRUE(isThere(c));
}

TEST_F(ImageMemoryTest, CountsCosts)
{
    memory.setCostLimit(10);
    store(a, 6);
    store(b, 4);
    EXPECT_TRUE(isThere(a));
    store(c, 1);
    EXPECT_FALSE(isThere(b));
    store(c, 11);
    EXPECT_FALSE(isThere(c));
}

TEST_F(ImageMemoryTest, TakesAnyCostForAtLeastOne)
{
    memory.setCostLimit(2);
    store(a, 0);
    store(b, -5);
    store(c, std::numeric_limits<qsizetype>::min());
    EXPECT_FALSE(isThere(a));
    EXPECT_TRUE(isThere(b));
    EXPECT_TRUE(isThere(c));
}

TEST_F(ImageMemoryTest, MakesRoomAtOnceForALowerLimit)
{
    store(a);
    store(b);
    store(c);
    memory.setCostLimit(1);
    EXPECT_FALSE(isThere(a));
    EXPECT_FALSE(isThere(b));
    EXPECT_TRUE(isThere(c));
    for (const qsizetype limit : {qsizetype(0), qsizetype(-1)}) {
        memory.setCostLimit(limit);
        EXPECT_FALSE(isThere(c));
        store(c);
        EXPECT_FALSE(isThere(c));
    }
}

TEST_F(ImageMemoryTest, TakesNothingReadOnceANewerPictureIsThere)
{
    const quint64 removals = memory.removals();
    memory.store(a, {noise(2), imageKey(a)}, 1);
    memory.storeRead(a, {noise(1), imageKey(a)}, removals);
    EXPECT_EQ(memory.find(a)->image, noise(2));
}

TEST_F(ImageMemoryTest, TakesNothingReadOnceAllWasRemoved)
{
    const quint64 removals = memory.removals();
    memory.removeAll();
    memory.storeRead(a, {noise(1), imageKey(a)}, removals);
    EXPECT_FALSE(isThere(a));
    memory.storeRead(a, {noise(1), imageKey(a)}, memory.removals());
    EXPECT_TRUE(isThere(a));
}

} // namespace
} // namespace kovalin::platform
