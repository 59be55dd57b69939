#include "picker/tags/QXSDKTagTile.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace {

const QString hello = QStringLiteral("hello");

TEST(QXSDKTagTile, HoldsTheTagAsItIsAndTheColour)
{
    const QXSDKTagTile tile(QStringLiteral(" Héllo! "), QColor(1, 2, 3, 4));
    EXPECT_EQ(tile.text(), QStringLiteral(" Héllo! "));
    EXPECT_EQ(tile.color(), QColor(1, 2, 3, 4));
}

TEST(QXSDKTagTile, EqualsATileOfEqualTextAndColourAndHashesAlike)
{
    const QXSDKTagTile tile(hello, Qt::red);
    const QXSDKTagTile same(QStringLiteral("hello"), QColor::fromHsvF(0, 1, 1));
    EXPECT_TRUE(tile.isEqual(tile));
    EXPECT_TRUE(tile.isEqual(same)) << "the same red in another colour model";
    EXPECT_EQ(tile.hash(), same.hash());
    EXPECT_FALSE(tile.isEqual(QXSDKTagTile(QStringLiteral("Hello"), Qt::red)));
    EXPECT_FALSE(tile.isEqual(QXSDKTagTile(hello, Qt::blue)));
    EXPECT_FALSE(tile.isEqual(QXSDKTagTile(hello, QColor(255, 0, 0, 254))));
    EXPECT_FALSE(tile.isEqual(QXSDKTagTile(hello, QColor())));
    EXPECT_TRUE(QXSDKTagTile(hello, QColor()).isEqual(QXSDKTagTile(hello, QColor())));
}

TEST(QXSDKTagTile, HashesByTextExclusiveOrColour)
{
    const auto hash = [](const QString& text, const QColor& color) {
        return QXSDKTagTile(text, color).hash();
    };
    const QString bye = QStringLiteral("bye");
    EXPECT_NE(hash(hello, Qt::red), hash(bye, Qt::red));
    EXPECT_NE(hash(hello, Qt::red), hash(hello, Qt::blue));
    EXPECT_EQ(hash(hello, Qt::red) ^ hash(hello, Qt::blue), hash(bye, Qt::red) ^ hash(bye, Qt::blue));
    EXPECT_EQ(hash(hello, Qt::red) ^ hash(bye, Qt::red), hash(hello, Qt::blue) ^ hash(bye, Qt::blue));
}

TEST(QXSDKTagTile, IsCopiedAsANewTileOfTheSameValues)
{
    const auto tile = std::make_shared<const QXSDKTagTile>(hello, Qt::red);
    const auto copy = tile->copy();
    EXPECT_NE(copy, tile);
    EXPECT_TRUE(copy->isEqual(*tile));
    EXPECT_EQ(copy->hash(), tile->hash());
}

} // namespace
