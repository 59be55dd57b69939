#include "kits/login/default/QXSDKTokenStore.h"
#include "kits/login/default/WithoutKeychain.h"
#include "support/WaitFor.h"

#include <gtest/gtest.h>

#include <optional>

using namespace kovalin::test;

namespace {

using Secret = std::optional<QByteArray>;

/// What the store has, once it has said so.
Secret read(QXSDKTokenStore& store, const QString& key)
{
    const auto secret = std::make_shared<std::pair<std::atomic<bool>, Secret>>();
    store.read(key, [secret](const Secret& found) {
        secret->second = found;
        secret->first = true;
    });
    EXPECT_TRUE(waitFor([&] { return secret->first.load(); }));
    return secret->second;
}

TEST(MemoryTokenStore, KeepsWhatWasWrittenLast)
{
    const auto store = QXSDKTokenStore::memory();
    const QString key = QStringLiteral("key");
    EXPECT_FALSE(read(*store, key));
    store->write(key, "one");
    store->write(QStringLiteral("other"), "two");
    EXPECT_EQ(read(*store, key), Secret("one"));
    store->write(key, QByteArray("\0x", 2));
    EXPECT_EQ(read(*store, key), Secret(QByteArray("\0x", 2)));
    store->remove(key);
    store->remove(key);
    EXPECT_FALSE(read(*store, key));
    EXPECT_EQ(read(*store, QStringLiteral("other")), Secret("two"));
}

TEST(KeychainTokenStore, KeepsNothingWhereThereIsNoKeychain)
{
    leaveKeychainUnreachable();
    const auto store = QXSDKTokenStore::keychain(QStringLiteral("kovalin tests"));
    const QString key = QStringLiteral("key");
    store->write(key, "secret");
    EXPECT_FALSE(read(*store, key));
    store->remove(key);
    EXPECT_FALSE(read(*store, key));
}

TEST(KeychainTokenStore, MayGoWithWorkUnderWay)
{
    leaveKeychainUnreachable();
    auto store = QXSDKTokenStore::keychain(QStringLiteral("kovalin tests"));
    const auto isRead = std::make_shared<std::atomic<bool>>(false);
    store->write(QStringLiteral("key"), "secret");
    store->read(QStringLiteral("key"), [isRead](const Secret&) { *isRead = true; });
    store.reset();
    EXPECT_TRUE(waitFor([&] { return isRead->load(); }));
}

} // namespace
