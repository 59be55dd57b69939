#include "ScriptedExecutors.h"
#include "learned_search/generated-src/LearnedSearchClassifierConversion.h"
#include "learned_search/generated-src/ModelCacheExecutorConversion.h"
#include "learned_search/generated-src/ModelFileBufferConversion.h"
#include "learned_search/generated-src/QXNativeModelCoordinator.h"
#include "support/ModelContent.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <barrier>
#include <cstddef>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using namespace djinni;
using namespace kovalin::test;
using vole::learned_search::test::bufferOf;
using vole::learned_search::test::ModelContent;

namespace {

constexpr std::size_t threadCount = 8;
constexpr int rounds = 200;

ModelContent birthdayModel()
{
    return ModelContent().list({7}).add("birthday", {{7, 0.5F}}, 0.5F, 1);
}

/// Calls `work` with the number of each thread, all of which begin together.
template <typename Work>
void onEightThreads(Work work)
{
    std::barrier start(static_cast<std::ptrdiff_t>(threadCount));
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&start, work, thread] {
            start.arrive_and_wait();
            work(thread);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

/// Executors without any state, for any thread.
class ConstantCacheExecutor final : public QXNativeModelCacheExecutor {
public:
    QXNativeModelMetaDataPtr getCachedModelMetaData(const QString& modelName) override
    {
        return record(modelName, 7, QXNativeStatusEnums::FILE_FAILED);
    }
    bool setCachedModelMetaData(const QString&, const QXNativeModelMetaDataPtr&) override { return true; }
};

class ConstantUpdateExecutor final : public QXNativeModelUpdateExecutor {
public:
    QXNativeKovalinApiResponsePtr getRemoteModelStatus(const QString& modelName,
                                                       std::optional<std::int32_t> modelVersion) override
    {
        return QXNativeKovalinApiResponse::KovalinApiResponseWithShouldUpdate(true, modelName, modelVersion);
    }
    QXNativeModelMetaDataPtr downloadModel(const QString&, const QXNativeModelMetaDataPtr& remote) override
    {
        return remote;
    }
};

/// In each round eight threads, at the same time, take `convert()`'s object, which they hold together and then let go of.
/// How many of all that they got were other than the first thread's.
template <class Convert>
int differencesAmong(const Convert& convert)
{
    std::atomic<int> differences = 0;
    std::barrier meeting(static_cast<std::ptrdiff_t>(threadCount));
    std::array<decltype(convert()), threadCount> objects;
    onEightThreads([&](std::size_t thread) {
        for (int round = 0; round < rounds; ++round) {
            meeting.arrive_and_wait();
            objects[thread] = convert();
            meeting.arrive_and_wait();
            differences += objects[thread] && objects[thread] == objects[0] ? 0 : 1;
            meeting.arrive_and_wait();
            objects[thread].reset();
        }
    });
    return differences;
}

} // namespace

TEST(BridgeThreads, MeetOneWrapperOfOneNativeObject)
{
    const std::size_t before = wrapperCache()->count();
    const std::shared_ptr<vole::learned_search::ModelFileBuffer> native = bufferOf(birthdayModel());

    EXPECT_EQ(differencesAmong([&] { return ModelFileBufferConversion::fromCpp(native); }), 0);

    EXPECT_EQ(wrapperCache()->count(), before);
}

TEST(BridgeThreads, MeetOneProxyOfOneExecutor)
{
    const std::size_t before = proxyCache()->count();
    const std::shared_ptr<QXNativeModelCacheExecutor> executor = std::make_shared<ConstantCacheExecutor>();

    EXPECT_EQ(differencesAmong([&] { return ModelCacheExecutorConversion::toCpp(executor); }), 0);

    EXPECT_EQ(proxyCache()->count(), before);
}

// Each wrapper lives shorter than others want it, so that dead entries are met and late removals come.
TEST(BridgeThreads, CrossTheSameObjectsWhileTheirWrappersDie)
{
    const std::size_t wrappers = wrapperCache()->count();
    const std::size_t proxies = proxyCache()->count();
    const std::shared_ptr<vole::learned_search::ModelFileBuffer> native = bufferOf(birthdayModel());
    const std::shared_ptr<QXNativeModelCacheExecutor> executor = std::make_shared<ConstantCacheExecutor>();
    std::atomic<int> faults = 0;

    onEightThreads([&](std::size_t) {
        for (int round = 0; round < rounds * 10; ++round) {
            const auto wrapper = ModelFileBufferConversion::fromCpp(native);
            const auto proxy = ModelCacheExecutorConversion::toCpp(executor);
            const bool isRight = wrapper->stateIsValid() && ModelFileBufferConversion::toCpp(wrapper) == native &&
                                 ModelCacheExecutorConversion::fromCpp(proxy) == executor;
            faults += isRight ? 0 : 1;
        }
    });

    EXPECT_EQ(faults, 0);
    EXPECT_EQ(wrapperCache()->count(), wrappers);
    EXPECT_EQ(proxyCache()->count(), proxies);
}

TEST(BridgeThreads, AskOneClassifier)
{
    const auto classifier = QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(
        ModelFileBufferConversion::fromCpp(bufferOf(birthdayModel())));
    std::atomic<int> answers = 0;

    onEightThreads([&](std::size_t) {
        for (int round = 0; round < rounds; ++round) {
            answers += classifier->predict(u"birthday"_s, 10) == QList<std::int32_t>{7} ? 1 : 0;
            answers += classifier->getAutocompleteSuggestions(u"birth"_s) == QStringList(u"birthday"_s) ? 1 : 0;
        }
    });

    EXPECT_EQ(answers, int(threadCount) * rounds * 2);
}

TEST(BridgeThreads, CallExecutorsThroughCoordinatorsOfTheirOwn)
{
    const auto cache = std::make_shared<ConstantCacheExecutor>();
    const auto update = std::make_shared<ConstantUpdateExecutor>();
    std::atomic<int> updates = 0;

    onEightThreads([&](std::size_t) {
        for (int round = 0; round < rounds; ++round) {
            const auto coordinator = QXNativeModelCoordinator::modelCoordinatorInstance(cache, update);
            updates += coordinator->updateLocalModel(u"/nonexistent/model"_s) ? 1 : 0;
            updates += coordinator->getModel(u"/nonexistent/model"_s)->stateIsValid() ? 1 : 0;
        }
    });

    EXPECT_EQ(updates, int(threadCount) * rounds);
}

TEST(BridgeThreads, TheLastOneEndsTheWrapperAndTheNativeObject)
{
    std::shared_ptr<vole::learned_search::ModelFileBuffer> native = bufferOf(birthdayModel());
    const std::weak_ptr<vole::learned_search::ModelFileBuffer> alive = native;
    std::vector<std::shared_ptr<QXNativeModelFileBuffer>> wrappers(threadCount,
                                                                   ModelFileBufferConversion::fromCpp(native));
    native.reset();
    std::atomic<int> valid = 0;

    onEightThreads([&](std::size_t thread) {
        const auto wrapper = std::move(wrappers[thread]);
        valid += wrapper->stateIsValid() ? 1 : 0;
    });

    EXPECT_EQ(valid, int(threadCount));
    EXPECT_TRUE(alive.expired());
}
