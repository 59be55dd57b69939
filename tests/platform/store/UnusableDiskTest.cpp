#include "platform/store/ImageStore.h"
#include "platform/store/StoreTesting.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <memory>

namespace kovalin::platform {
namespace {

using test::contains;
using test::finishStoring;
using test::isSame;
using test::noise;
using test::objectIn;
using test::picture;

/// While it is in scope no file of this program grows beyond a size, as on a full disk.
class FileSizeLimit final {
public:
    explicit FileSizeLimit(rlim_t bytes)
        : _previousHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &_previous);
        const rlimit limit{bytes, _previous.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &_previous);
        static_cast<void>(std::signal(SIGXFSZ, _previousHandler));
    }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    void (*_previousHandler)(int);
    rlimit _previous{};
};

class UnusableDisk : public testing::Test {
protected:
    std::unique_ptr<ImageStore> open()
    {
        return std::make_unique<ImageStore>(QStringLiteral("pictures"), folder.path());
    }

    static void expectMemoryWorks(ImageStore& store)
    {
        for (int i = 0; i < 10; ++i) {
            store.setObject(picture(static_cast<quint32>(i)), QString::number(i));
        }
        for (int i = 0; i < 10; ++i) {
            EXPECT_TRUE(isSame(objectIn(store, QString::number(i)), noise(static_cast<quint32>(i)))) << i;
        }
        finishStoring(store);
    }

    const test::Folder folder{};
};

TEST_F(UnusableDisk, LeavesTheMemoryLevelWhereTheFolderCanNotBeMade)
{
    folder.write(QStringLiteral("a file"), "in the folder's place");
    const test::StoreLines lines;
    {
        ImageStore store(QStringLiteral("pictures"), folder.path(QStringLiteral("a file/folder")));
        expectMemoryWorks(store);
        store.diskCache().setByteLimit(100);
        test::removeAll(store);
        EXPECT_FALSE(contains(store, QStringLiteral("1")));
    }
    ASSERT_EQ(lines.all().size(), 1) << lines.all().join(u'\n').toStdString();
    EXPECT_TRUE(lines.all()[0].contains(QStringLiteral("can't be used now: its folder can't be made")));
}

TEST_F(UnusableDisk, LeavesTheMemoryLevelInAFolderThatCanNotBeWritten)
{
    // The superuser writes everywhere, but for where there are no files.
    const QString processes = QStringLiteral("/proc/self");
    if (geteuid() == 0 && !QFileInfo::exists(processes)) {
        GTEST_SKIP() << "there is no such folder for the superuser";
    }
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner);
    const test::StoreLines lines;
    {
        ImageStore store(QStringLiteral("pictures"), geteuid() == 0 ? processes : folder.path());
        expectMemoryWorks(store);
    }
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(lines.all().size(), 1) << lines.all().join(u'\n').toStdString();
}

TEST_F(UnusableDisk, IsTriedAgainWithEachPictureToStore)
{
    folder.write(QStringLiteral("later"), "in the folder's place");
    ImageStore store(QStringLiteral("pictures"), folder.path(QStringLiteral("later")));
    expectMemoryWorks(store);
    QFile::remove(folder.path(QStringLiteral("later")));
    store.memoryCache().setCostLimit(0);
    store.setObject(picture(1), QStringLiteral("new"));
    EXPECT_TRUE(contains(store, QStringLiteral("new")));
}

TEST_F(UnusableDisk, LeavesTheMemoryLevelWhenItIsFullFromTheStart)
{
    const test::StoreLines lines;
    const FileSizeLimit full(4096);
    const auto store = open();
    expectMemoryWorks(*store);
    EXPECT_EQ(lines.all().size(), 1) << lines.all().join(u'\n').toStdString();
}

TEST_F(UnusableDisk, KeepsWhatItHasWhenItGetsFull)
{
    constexpr int many = 200;
    const test::StoreLines lines;
    auto store = open();
    store->setObject(picture(1), QStringLiteral("before"));
    finishStoring(*store);
    {
        const FileSizeLimit full(150'000);
        for (int i = 0; i < many; ++i) {
            store->setObject(picture(static_cast<quint32>(i)), QString::number(i));
        }
        finishStoring(*store);
        EXPECT_TRUE(isSame(objectIn(*store, QString::number(many - 1)), noise(many - 1)));
        EXPECT_EQ(lines.all().size(), 1) << lines.all().join(u'\n').toStdString();
    }
    store->setObject(picture(2), QStringLiteral("after"));
    finishStoring(*store);
    store = open();
    EXPECT_TRUE(isSame(objectIn(*store, QStringLiteral("before")), noise(1)));
    EXPECT_TRUE(isSame(objectIn(*store, QStringLiteral("after")), noise(2)));
    EXPECT_FALSE(QFileInfo::exists(folder.path(QStringLiteral("pictures.sqlite.damaged"))));
}

TEST_F(UnusableDisk, IsStillEmptiedWhenItIsFull)
{
    const QByteArray marker = "a picture that must not be left";
    const auto store = open();
    for (int i = 0; i < 30; ++i) {
        store->setObject({noise(1), marker.repeated(300)}, QString::number(i));
    }
    finishStoring(*store);
    const FileSizeLimit full(1);
    test::removeAll(*store);
    for (const QString& name : folder.names()) {
        EXPECT_FALSE(folder.read(name).contains(marker.first(10))) << name.toStdString();
    }
}

TEST_F(UnusableDisk, IsMadeAnewWhenSomebodyRemovesItsFilesMeanwhile)
{
    const test::StoreLines lines;
    const auto store = open();
    store->setObject(picture(1), QStringLiteral("1"));
    finishStoring(*store);
    for (const QString& name : folder.names()) {
        QFile::remove(folder.path(name));
    }
    store->memoryCache().setCostLimit(0);
    EXPECT_FALSE(contains(*store, QStringLiteral("1")));
    store->setObject(picture(2), QStringLiteral("2"));
    finishStoring(*store);
    const auto other = open();
    EXPECT_TRUE(isSame(objectIn(*other, QStringLiteral("2")), noise(2)));
    EXPECT_TRUE(lines.all().isEmpty()) << lines.all().join(u'\n').toStdString();
}

} // namespace
} // namespace kovalin::platform
