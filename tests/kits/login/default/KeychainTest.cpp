// The system's own keychain, in a session of its own with an empty keyring: scripts/with-keyring.sh runs this program.
#include "kits/login/default/QXSDKTokenStore.h"
#include "support/WaitFor.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace kovalin::test {
namespace {

using Secret = std::optional<QByteArray>;

class Keychain : public testing::Test {
protected:
    static std::shared_ptr<QXSDKTokenStore> store(const QString& service = QStringLiteral("kovalin tests"))
    {
        return QXSDKTokenStore::keychain(service);
    }

    /// What a store has, once it has said so.
    static Secret read(QXSDKTokenStore& store, const QString& key)
    {
        const auto found = std::make_shared<std::optional<Secret>>();
        store.read(key, [found](const Secret& secret) { *found = secret; });
        EXPECT_TRUE(waitFor([&] { return found->has_value(); }));
        return found->value_or(std::nullopt);
    }

    /// Writes, and waits until another store has it.
    static void write(const QString& key, const QByteArray& secret)
    {
        store()->write(key, secret);
        ASSERT_TRUE(waitFor([&] { return read(*store(), key) == secret; }));
    }

    const QString key = QStringLiteral("client/https://accounts.example");
};

TEST_F(Keychain, KeepsASecretForTheNextStore)
{
    EXPECT_FALSE(read(*store(), key));
    write(key, "first");
    write(key, "second");
    EXPECT_EQ(read(*store(), key), Secret("second"));
    store()->remove(key);
    EXPECT_TRUE(waitFor([&] { return !read(*store(), key); }));
}

TEST_F(Keychain, KeepsAnyBytes)
{
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte) {
        all.append(static_cast<char>(byte));
    }
    write(key, all);
    write(key, all.repeated(64)); // as long as tokens get
}

TEST_F(Keychain, KeepsKeysAndServicesApart)
{
    const QString other = QStringLiteral("other");
    write(key, "one");
    write(other, "two");
    EXPECT_EQ(read(*store(), key), Secret("one"));
    EXPECT_FALSE(read(*store(QStringLiteral("kovalin tests of others")), key));
    store()->remove(other);
    EXPECT_TRUE(waitFor([&] { return !read(*store(), other); }));
    EXPECT_EQ(read(*store(), key), Secret("one"));
}

TEST_F(Keychain, WritesNoSecretIntoAPlainFile)
{
    const QByteArray secret = "a secret that nobody else may read";
    write(key, secret);
    int files = 0;
    QDirIterator all(QDir::homePath(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        QFile file(all.next());
        if (file.open(QIODevice::ReadOnly)) {
            ++files;
            EXPECT_FALSE(file.readAll().contains(secret)) << file.fileName().toStdString();
        }
    }
    EXPECT_GT(files, 0) << "the keyring's own at least";
}

} // namespace
} // namespace kovalin::test
