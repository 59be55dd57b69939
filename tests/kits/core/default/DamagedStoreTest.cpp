#include "kits/core/default/OutboxStore.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

// A file with any damage: nothing crashes, nothing comes out that wasn't put in, and the store works afterwards.

namespace kovalin::kits {
namespace {

using Result = OutboxStore::Result;

class DamagedStore : public testing::Test {
protected:
    DamagedStore()
    {
        for (int i = 0; i < 40; ++i) {
            entries.push_back({.id = QUuid::createUuid(),
                               .time = 1'600'000'000'000 + i,
                               .bytes = QByteArray::number(i).repeated(100 + i)});
        }
        OutboxStore store(path);
        EXPECT_EQ(store.apply({.added = entries, .removed = {}, .dropped = 7}), Result::Done);
        EXPECT_EQ(store.apply({.added = {}, .removed = {entries[3].id}, .dropped = 1}), Result::Done);
    }

    /// The file as it should be: a store's end has brought into it what the log before the writes had.
    [[nodiscard]] QByteArray sound() const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void expectWorksWith(const QByteArray& content, const std::string& what)
    {
        QFile::remove(path + QStringLiteral("-wal"));
        QFile::remove(path + QStringLiteral("-shm"));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(file.write(content), content.size());
        file.close();

        const OutboxEntry late{.id = QUuid::createUuid(), .time = 1, .bytes = "late"};
        {
            OutboxStore store(path);
            const auto loaded = store.load();
            ASSERT_TRUE(loaded.has_value()) << what;
            for (const OutboxEntry& entry : loaded->entries) {
                ASSERT_NE(std::ranges::find(entries, entry), entries.end()) << what;
            }
            Result result = store.apply({.added = {late}, .removed = {entries[0].id}, .dropped = 1});
            if (result == Result::MadeAnew) {
                result = store.apply({.added = {late}, .removed = {}, .dropped = 0});
            }
            ASSERT_EQ(result, Result::Done) << what;
        }
        const auto again = OutboxStore(path).load();
        ASSERT_TRUE(again.has_value()) << what;
        ASSERT_NE(std::ranges::find(again->entries, late), again->entries.end()) << what;
        ASSERT_EQ(std::ranges::find(again->entries, entries[0]), again->entries.end()) << what;
    }

    // In memory where there is such a folder: hundreds of stores are made, and each waits for the disk.
    const QTemporaryDir folder{
        (QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm") : QDir::tempPath()) +
        QStringLiteral("/kovalin-XXXXXX")};
    const QString path = folder.filePath(QStringLiteral("outbox.sqlite"));
    std::vector<OutboxEntry> entries;
};

TEST_F(DamagedStore, WorksWithAnyWrongByte)
{
    const QByteArray content = sound();
    ASSERT_GT(content.size(), 8192);
    for (qsizetype i = 0; i < content.size(); i += 97) {
        QByteArray damaged = content;
        damaged[i] = static_cast<char>(~damaged[i]);
        expectWorksWith(damaged, fmt::format("byte {}", i));
    }
}

TEST_F(DamagedStore, WorksWithAWrongBitInAnyByteOfTheHead)
{
    const QByteArray content = sound();
    constexpr qsizetype head = 100; // each of its bytes means something
    for (qsizetype i = 0; i < head; ++i) {
        QByteArray damaged = content;
        damaged[i] = static_cast<char>(static_cast<unsigned char>(damaged[i]) ^ (1U << (i % 8)));
        expectWorksWith(damaged, fmt::format("byte {}", i));
    }
}

TEST_F(DamagedStore, WorksWithAnyPartOfItself)
{
    const QByteArray content = sound();
    for (qsizetype size = 0; size < content.size(); size += 211) {
        expectWorksWith(content.first(size), fmt::format("the first {} bytes", size));
    }
}

TEST_F(DamagedStore, WorksWithZerosInThePlaceOfPages)
{
    const QByteArray content = sound();
    constexpr qsizetype page = 4096;
    for (qsizetype at = 0; at + page <= content.size(); at += page) {
        expectWorksWith(QByteArray(content).replace(at, page, QByteArray(page, '\0')), fmt::format("page at {}", at));
    }
}

} // namespace
} // namespace kovalin::kits
