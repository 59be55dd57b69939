#include "search/QXSDKKovalinSet.h"

#include "StickerBuilding.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace kovalin::test;

TEST(QXSDKKovalinSet, HoldsWhatItWasMadeWith)
{
    // The flag is taken as given, and so are repeats.
    const auto a = solo(u"a"_s);
    const KovalinStickerList stickers{a, pair(u"b"_s), a};
    const QXSDKKovalinSet set(stickers, false);

    EXPECT_EQ(set.count(), 3);
    EXPECT_FALSE(set.hasSolovalin());
    EXPECT_EQ(set.array(), stickers);
}

TEST(QXSDKKovalinSet, MayBeEmpty)
{
    const QXSDKKovalinSet set({}, true);

    EXPECT_EQ(set.count(), 0);
    EXPECT_TRUE(set.hasSolovalin());
    EXPECT_TRUE(set.array().isEmpty());
}

TEST(QXSDKKovalinSet, IsNotChangedByItsSource)
{
    KovalinStickerList stickers{solo(u"a"_s), solo(u"b"_s)};
    const QXSDKKovalinSet set(stickers, true);
    stickers.removeFirst();

    EXPECT_EQ(comicIds(set.array()), QStringList({u"a"_s, u"b"_s}));
}
