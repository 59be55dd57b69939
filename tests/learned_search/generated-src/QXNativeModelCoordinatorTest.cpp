#include "learned_search/generated-src/QXNativeModelCoordinator.h"

#include "ScriptedExecutors.h"
#include "learned_search/generated-src/QXNativeLearnedSearchClassifier.h"
#include "learned_search/generated-src/QXNativeModelFileBuffer.h"
#include "support/ModelContent.h"
#include "support/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using namespace Qt::StringLiterals;
using namespace kovalin::test;
using namespace vole::learned_search::test;
using testing::ContainsRegex;
using testing::ElementsAre;

namespace {

class QXNativeModelCoordinatorTest : public testing::Test {
protected:
    std::shared_ptr<ScriptedCacheExecutor> cache = std::make_shared<ScriptedCacheExecutor>();
    std::shared_ptr<ScriptedUpdateExecutor> update = std::make_shared<ScriptedUpdateExecutor>();
    std::shared_ptr<QXNativeModelCoordinator> coordinator =
        QXNativeModelCoordinator::modelCoordinatorInstance(cache, update);

    void offerUpdate()
    {
        cache->cached = record(u"/old"_s, 7);
        update->response =
            QXNativeKovalinApiResponse::KovalinApiResponseWithShouldUpdate(true, u"https://m\u00FC"_s, 8);
        update->downloaded = record(u"/new"_s, 9);
    }
};

using QXNativeModelCoordinatorDeathTest = QXNativeModelCoordinatorTest;

} // namespace

TEST_F(QXNativeModelCoordinatorTest, UpdatesThroughTheExecutors)
{
    offerUpdate();

    EXPECT_TRUE(coordinator->updateLocalModel(u"LearnedSearch\u00FC"_s));

    EXPECT_EQ(cache->names, QStringList({u"LearnedSearch\u00FC"_s, u"LearnedSearch\u00FC"_s}));
    EXPECT_EQ(update->names, QStringList({u"LearnedSearch\u00FC"_s, u"LearnedSearch\u00FC"_s}));
    EXPECT_EQ(update->askedVersion, std::optional<std::int32_t>(7));
    EXPECT_EQ(update->remote->modelUrl(), u"https://m\u00FC"_s);
    EXPECT_EQ(update->remote->modelVersion(), 8);
    EXPECT_EQ(update->remote->statusCode(), QXNativeStatusEnums::SUCCESS);
    EXPECT_EQ(cache->stored->modelUrl(), u"/new"_s);
    EXPECT_EQ(cache->stored->modelVersion(), 9);
    EXPECT_EQ(cache->stored->statusCode(), QXNativeStatusEnums::SUCCESS);
}

TEST_F(QXNativeModelCoordinatorTest, SaysWhenTheRecordWasNotStored)
{
    offerUpdate();
    cache->written = false;

    EXPECT_FALSE(coordinator->updateLocalModel(u"LearnedSearch"_s));

    EXPECT_TRUE(cache->stored);
}

TEST_F(QXNativeModelCoordinatorTest, AsksWithAnAbsentVersionWhereNoneIsCached)
{
    cache->cached = record(u"/old"_s, std::nullopt);

    EXPECT_FALSE(coordinator->updateLocalModel(u"LearnedSearch"_s));

    ASSERT_TRUE(update->askedVersion.has_value());
    EXPECT_EQ(*update->askedVersion, std::nullopt);
}

TEST_F(QXNativeModelCoordinatorTest, TakesNoAnswerForARefusal)
{
    offerUpdate();
    update->response = nullptr;

    EXPECT_FALSE(coordinator->updateLocalModel(u"LearnedSearch"_s));

    EXPECT_FALSE(update->remote);
    EXPECT_FALSE(cache->stored);
}

TEST_F(QXNativeModelCoordinatorTest, StoresNothingAfterAFailedDownload)
{
    for (const auto status : {QXNativeStatusEnums::MAIN_THREAD_REFUSED, QXNativeStatusEnums::FILE_FAILED,
                              QXNativeStatusEnums::DOWNLOAD_FAILED, QXNativeStatusEnums(-1)}) {
        offerUpdate();
        update->downloaded = record(u"/new"_s, 9, status);

        EXPECT_FALSE(coordinator->updateLocalModel(u"LearnedSearch"_s));

        EXPECT_FALSE(cache->stored);
    }
}

TEST_F(QXNativeModelCoordinatorTest, OpensTheCachedModel)
{
    const TemporaryFile file(ModelContent().list({7}).add("dog", {{7, 0.5F}}).toFile());
    cache->cached = record(QString::fromStdString(file.path()), 7);

    const auto buffer = coordinator->getModel(u"LearnedSearch"_s);

    ASSERT_TRUE(buffer->stateIsValid());
    const auto classifier = QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer);
    EXPECT_THAT(classifier->predict(u"dog"_s, 10), ElementsAre(7));
    EXPECT_EQ(cache->names, QStringList(u"LearnedSearch"_s));
}

TEST_F(QXNativeModelCoordinatorTest, GivesAnInvalidBufferWhereNothingIsCached)
{
    const auto buffer = coordinator->getModel(u"LearnedSearch"_s);

    ASSERT_TRUE(buffer);
    EXPECT_FALSE(buffer->stateIsValid());
}

TEST_F(QXNativeModelCoordinatorTest, IsANewOneAtEachCall)
{
    EXPECT_NE(QXNativeModelCoordinator::modelCoordinatorInstance(cache, update), coordinator);
}

TEST_F(QXNativeModelCoordinatorTest, CallsTheExecutorsOnTheCallersThread)
{
    std::vector<std::thread::id> threads;
    cache->before = [&] {
        threads.push_back(std::this_thread::get_id());
    };
    update->before = cache->before;
    std::thread::id caller;

    std::thread([&] {
        caller = std::this_thread::get_id();
        static_cast<void>(coordinator->updateLocalModel(u"LearnedSearch"_s));
        static_cast<void>(coordinator->getModel(u"LearnedSearch"_s));
    }).join();

    EXPECT_THAT(threads, ElementsAre(caller, caller, caller));
}

TEST_F(QXNativeModelCoordinatorDeathTest, StopsTheProgramWhenAnExecutorGivesNoRecord)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    offerUpdate();
    update->downloaded = nullptr;
    EXPECT_DEATH(static_cast<void>(coordinator->updateLocalModel(u"LearnedSearch"_s)), ContainsRegex("\\bobj\\b"));

    cache->cached = nullptr;
    EXPECT_DEATH(static_cast<void>(coordinator->getModel(u"LearnedSearch"_s)), ContainsRegex("\\bobj\\b"));
}
