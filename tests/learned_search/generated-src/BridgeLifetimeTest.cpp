#include "ScriptedExecutors.h"
#include "learned_search/generated-src/LearnedSearchClassifierConversion.h"
#include "learned_search/generated-src/ModelCacheExecutorConversion.h"
#include "learned_search/generated-src/ModelCoordinatorConversion.h"
#include "learned_search/generated-src/ModelFileBufferConversion.h"
#include "support/ModelContent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

using namespace Qt::StringLiterals;
using namespace djinni;
using namespace kovalin::test;
using testing::ElementsAre;
using vole::learned_search::test::bufferOf;
using vole::learned_search::test::ModelContent;

namespace {

std::shared_ptr<vole::learned_search::ModelFileBuffer> birthdayModel()
{
    return bufferOf(ModelContent().list({7}).add("birthday", {{7, 0.5F}}));
}

/// Ends an object on another thread.
template <class Object>
void endElsewhere(std::shared_ptr<Object>&& object)
{
    std::thread([last = std::move(object)]() mutable { last.reset(); }).join();
}

} // namespace

TEST(BridgeLifetime, AWrapperKeepsItsNativeObject)
{
    auto native = birthdayModel();
    const std::weak_ptr<vole::learned_search::ModelFileBuffer> alive = native;
    auto wrapper = ModelFileBufferConversion::fromCpp(native);

    native.reset();
    EXPECT_FALSE(alive.expired());
    wrapper.reset();
    EXPECT_TRUE(alive.expired());
}

TEST(BridgeLifetime, ANativeObjectOutlivesItsWrapper)
{
    auto wrapper = ModelFileBufferConversion::fromCpp(birthdayModel());
    const auto native = ModelFileBufferConversion::toCpp(wrapper);

    wrapper.reset();

    EXPECT_TRUE(native->stateIsValid());
}

TEST(BridgeLifetime, AClassifierKeepsItsModelWithoutTheBuffersWrapper)
{
    auto buffer = ModelFileBufferConversion::fromCpp(birthdayModel());
    const std::weak_ptr<vole::learned_search::ModelFileBuffer> alive = ModelFileBufferConversion::toCpp(buffer);
    auto classifier = QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer);

    buffer.reset();

    EXPECT_THAT(classifier->predict(u"birthday"_s, 1), ElementsAre(7));
    classifier.reset();
    EXPECT_TRUE(alive.expired());
}

TEST(BridgeLifetime, AWrapperMayEndOnAnotherThread)
{
    const std::size_t before = wrapperCache()->count();
    auto wrapper = ModelFileBufferConversion::fromCpp(birthdayModel());
    const std::weak_ptr<vole::learned_search::ModelFileBuffer> alive = ModelFileBufferConversion::toCpp(wrapper);

    endElsewhere(std::move(wrapper));

    EXPECT_TRUE(alive.expired());
    EXPECT_EQ(wrapperCache()->count(), before);
}

TEST(BridgeLifetime, ACoordinatorKeepsItsExecutors)
{
    auto cache = std::make_shared<ScriptedCacheExecutor>();
    auto update = std::make_shared<ScriptedUpdateExecutor>();
    const std::weak_ptr<ScriptedCacheExecutor> cacheAlive = cache;
    const std::weak_ptr<ScriptedUpdateExecutor> updateAlive = update;
    auto coordinator = QXNativeModelCoordinator::modelCoordinatorInstance(cache, update);
    const std::size_t proxies = proxyCache()->count();

    cache.reset();
    update.reset();
    EXPECT_FALSE(cacheAlive.expired());
    EXPECT_FALSE(updateAlive.expired());
    EXPECT_FALSE(coordinator->updateLocalModel(u"LearnedSearch"_s));
    EXPECT_EQ(updateAlive.lock()->names, QStringList(u"LearnedSearch"_s));

    endElsewhere(std::move(coordinator));
    EXPECT_TRUE(cacheAlive.expired());
    EXPECT_TRUE(updateAlive.expired());
    EXPECT_EQ(proxyCache()->count(), proxies - 2);
}

TEST(BridgeLifetime, AProxyKeepsItsExecutorAndTheExecutorNoProxy)
{
    auto cache = std::make_shared<ScriptedCacheExecutor>();
    const std::weak_ptr<ScriptedCacheExecutor> alive = cache;
    auto proxy = ModelCacheExecutorConversion::toCpp(cache);
    const std::weak_ptr<vole::learned_search::ModelCacheExecutor> proxyAlive = proxy;

    cache.reset();
    EXPECT_FALSE(alive.expired());
    proxy.reset();
    EXPECT_TRUE(proxyAlive.expired());
    EXPECT_TRUE(alive.expired());
}

// An executor of the platform may drop what it stands behind while it is called.
TEST(BridgeLifetime, AnExecutorMayLetGoOfTheCoordinatorsWrapperInACall)
{
    const auto cache = std::make_shared<ScriptedCacheExecutor>();
    auto coordinator =
        QXNativeModelCoordinator::modelCoordinatorInstance(cache, std::make_shared<ScriptedUpdateExecutor>());
    const auto native = ModelCoordinatorConversion::toCpp(coordinator);
    cache->before = [&] {
        coordinator.reset();
    };

    EXPECT_FALSE(native->getModel("LearnedSearch")->stateIsValid());

    EXPECT_FALSE(coordinator);
}

// Objects that are made and cross while an executor is called take the tables' mutexes: nobody may hold them in a call.
TEST(BridgeLifetime, AnExecutorMayUseTheBridgeInACall)
{
    const auto cache = std::make_shared<ScriptedCacheExecutor>();
    const auto update = std::make_shared<ScriptedUpdateExecutor>();
    const auto coordinator = QXNativeModelCoordinator::modelCoordinatorInstance(cache, update);
    bool called = false;
    cache->before = [&] {
        const auto other = QXNativeModelCoordinator::modelCoordinatorInstance(cache, update);
        called =
            other != nullptr && ModelCoordinatorConversion::fromCpp(ModelCoordinatorConversion::toCpp(other)) == other;
    };

    static_cast<void>(coordinator->getModel(u"LearnedSearch"_s));

    EXPECT_TRUE(called);
}

namespace {

/// Ends a wrapper and a proxy, and makes others, when statics are gone or going.
struct AtExit {
    std::shared_ptr<QXNativeModelFileBuffer> buffer;
    std::shared_ptr<vole::learned_search::ModelCacheExecutor> proxy;

    ~AtExit()
    {
        const auto native = ModelFileBufferConversion::toCpp(buffer);
        buffer.reset();
        const auto again = ModelFileBufferConversion::fromCpp(native);
        const auto executor = ModelCacheExecutorConversion::fromCpp(proxy);
        proxy.reset();
        if (!again->stateIsValid() && ModelCacheExecutorConversion::toCpp(executor)) {
            std::fputs("crossed at exit\n", stderr);
        }
    }
};

} // namespace

TEST(BridgeLifetimeDeathTest, TheCachesOutliveTheStaticsThatWereThereBeforeThem)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            static AtExit last; // made before the caches in this process, so it goes after whatever they would go with
            last.buffer = QXNativeModelFileBuffer::modelFileBufferInstanceWithPath(std::nullopt);
            last.proxy = ModelCacheExecutorConversion::toCpp(std::make_shared<ScriptedCacheExecutor>());
            std::exit(0);
        },
        testing::ExitedWithCode(0), "crossed at exit");
}
