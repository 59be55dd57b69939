#include "learned_search/generated-src/QXNativeModelFileBuffer.h"

#include "support/ModelContent.h"
#include "support/RecordingLogger.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

using namespace Qt::StringLiterals;
using namespace vole::learned_search::test;
using testing::ElementsAre;
using testing::IsEmpty;
using vole::test::RecordingLogger;

TEST(QXNativeModelFileBuffer, IsInvalidWithoutAPath)
{
    const RecordingLogger logger;

    const auto buffer = QXNativeModelFileBuffer::modelFileBufferInstanceWithPath(std::nullopt);

    ASSERT_TRUE(buffer);
    EXPECT_FALSE(buffer->stateIsValid());
    EXPECT_THAT(logger.lines(), IsEmpty());
}

TEST(QXNativeModelFileBuffer, IsInvalidWithAnEmptyPathWhichIsNoAbsentOne)
{
    const RecordingLogger logger;

    const auto buffer = QXNativeModelFileBuffer::modelFileBufferInstanceWithPath(u""_s);

    EXPECT_FALSE(buffer->stateIsValid());
    EXPECT_THAT(logger.messages(), ElementsAre("Unable to read model file"));
}

TEST(QXNativeModelFileBuffer, MapsAFileWhateverItsName)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"m\u00FC\U0001F600.plist"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write("model"), 5);
    file.close();

    const auto buffer = QXNativeModelFileBuffer::modelFileBufferInstanceWithPath(path);

    ASSERT_TRUE(buffer->stateIsValid());
    ASSERT_EQ(buffer->getSize(), 5);
    EXPECT_EQ(std::memcmp(reinterpret_cast<const void*>(buffer->getAddress()), "model", 5), 0);
}

TEST(QXNativeModelFileBuffer, GoesOnToCallItselfValidOnceDisposed)
{
    const TemporaryFile file(Bytes(64, 1));
    const auto buffer = QXNativeModelFileBuffer::modelFileBufferInstanceWithPath(QString::fromStdString(file.path()));
    const std::int64_t address = buffer->getAddress();

    buffer->dispose();

    EXPECT_TRUE(buffer->stateIsValid());
    EXPECT_EQ(buffer->getAddress(), address);
    EXPECT_EQ(buffer->getSize(), 64);
}
