#include "ScriptedExecutors.h"
#include "learned_search/generated-src/LearnedSearchClassifierConversion.h"
#include "learned_search/generated-src/ModelCacheExecutorConversion.h"
#include "learned_search/generated-src/ModelCoordinatorConversion.h"
#include "learned_search/generated-src/ModelFileBufferConversion.h"
#include "learned_search/generated-src/ModelUpdateExecutorConversion.h"
#include "support/ModelContent.h"

#include <gtest/gtest.h>

#include <vector>

using namespace djinni;
using namespace kovalin::test;
using vole::learned_search::LearnedSearchClassifier;
using vole::learned_search::test::Bytes;
using vole::learned_search::test::MemoryBuffer;

namespace {

/// One object for both protocols.
class BothExecutors final : public QXNativeModelCacheExecutor, public QXNativeModelUpdateExecutor {
public:
    QXNativeModelMetaDataPtr getCachedModelMetaData(const QString&) override { return record(std::nullopt, 1); }
    bool setCachedModelMetaData(const QString&, const QXNativeModelMetaDataPtr&) override { return true; }
    QXNativeKovalinApiResponsePtr getRemoteModelStatus(const QString&, std::optional<std::int32_t>) override
    {
        return nullptr;
    }
    QXNativeModelMetaDataPtr downloadModel(const QString&, const QXNativeModelMetaDataPtr&) override
    {
        return record(std::nullopt, 2);
    }
};

/// An executor that never crossed the bridge.
class NativeExecutor final : public vole::learned_search::ModelCacheExecutor {
public:
    vole::learned_search::ModelMetaData getCachedModelMetaData(const std::string&) override
    {
        return {std::nullopt, std::nullopt, vole::learned_search::StatusEnums::SUCCESS};
    }
    bool setCachedModelMetaData(const std::string&, const vole::learned_search::ModelMetaData&) override
    {
        return false;
    }
};

} // namespace

TEST(WrapperIdentity, IsKeptWhileTheFirstWrapperLives)
{
    const auto native = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(nullptr);
    const auto wrapper = LearnedSearchClassifierConversion::fromCpp(native);

    EXPECT_EQ(LearnedSearchClassifierConversion::fromCpp(native), wrapper);
    EXPECT_EQ(LearnedSearchClassifierConversion::toCpp(wrapper), native);
}

TEST(WrapperIdentity, IsANewOneOnceTheFirstWrapperIsGone)
{
    const auto native = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(nullptr);
    auto first = LearnedSearchClassifierConversion::fromCpp(native);
    const std::weak_ptr<QXNativeLearnedSearchClassifier> firstAlive = first;
    first.reset();
    ASSERT_TRUE(firstAlive.expired());

    const auto second = LearnedSearchClassifierConversion::fromCpp(native);

    ASSERT_TRUE(second);
    EXPECT_FALSE(second->modelIsInitialized());
    EXPECT_TRUE(firstAlive.expired());
}

TEST(WrapperIdentity, IsOfOneNativeObject)
{
    const auto one = std::make_shared<MemoryBuffer>(Bytes(8, 1));
    const auto other = std::make_shared<MemoryBuffer>(Bytes(8, 1));

    EXPECT_NE(ModelFileBufferConversion::fromCpp(one), ModelFileBufferConversion::fromCpp(other));
}

TEST(WrapperIdentity, SurvivesTheWayThereAndBack)
{
    const auto buffer = QXNativeModelFileBuffer::modelFileBufferInstanceWithPath(std::nullopt);

    EXPECT_EQ(ModelFileBufferConversion::fromCpp(ModelFileBufferConversion::toCpp(buffer)), buffer);
}

TEST(WrapperIdentity, OfNullIsNull)
{
    EXPECT_EQ(ModelFileBufferConversion::fromCpp(nullptr), nullptr);
    EXPECT_EQ(ModelFileBufferConversion::toCpp(nullptr), nullptr);
    EXPECT_EQ(LearnedSearchClassifierConversion::fromCpp(nullptr), nullptr);
    EXPECT_EQ(LearnedSearchClassifierConversion::toCpp(nullptr), nullptr);
    EXPECT_EQ(ModelCoordinatorConversion::fromCpp(nullptr), nullptr);
    EXPECT_EQ(ModelCoordinatorConversion::toCpp(nullptr), nullptr);
}

TEST(WrapperIdentity, LeavesNoEntryBehind)
{
    const std::size_t before = wrapperCache()->count();
    {
        const auto buffer = QXNativeModelFileBuffer::modelFileBufferInstanceWithPath(std::nullopt);
        const auto classifier = QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer);
        EXPECT_EQ(wrapperCache()->count(), before + 2);
    }

    EXPECT_EQ(wrapperCache()->count(), before);
}

TEST(ProxyIdentity, IsKeptWhileACoordinatorHoldsTheProxy)
{
    const auto cache = std::make_shared<ScriptedCacheExecutor>();
    const auto update = std::make_shared<ScriptedUpdateExecutor>();
    const auto first = QXNativeModelCoordinator::modelCoordinatorInstance(cache, update);
    const std::weak_ptr<vole::learned_search::ModelCacheExecutor> cacheProxy =
        ModelCacheExecutorConversion::toCpp(cache);
    const std::weak_ptr<vole::learned_search::ModelUpdateExecutor> updateProxy =
        ModelUpdateExecutorConversion::toCpp(update);
    ASSERT_FALSE(cacheProxy.expired()) << "it is the coordinator's";
    ASSERT_FALSE(updateProxy.expired());
    const std::size_t before = proxyCache()->count();

    const auto second = QXNativeModelCoordinator::modelCoordinatorInstance(cache, update);

    EXPECT_EQ(ModelCacheExecutorConversion::toCpp(cache), cacheProxy.lock());
    EXPECT_EQ(ModelUpdateExecutorConversion::toCpp(update), updateProxy.lock());
    EXPECT_EQ(proxyCache()->count(), before);
}

TEST(ProxyIdentity, IsANewOneOnceTheFirstProxyIsGone)
{
    const auto cache = std::make_shared<ScriptedCacheExecutor>();
    auto proxy = ModelCacheExecutorConversion::toCpp(cache);
    const std::weak_ptr<vole::learned_search::ModelCacheExecutor> alive = proxy;
    proxy.reset();
    ASSERT_TRUE(alive.expired());

    EXPECT_TRUE(ModelCacheExecutorConversion::toCpp(cache));
}

TEST(ProxyIdentity, GivesBackThePlatformsObject)
{
    const std::shared_ptr<QXNativeModelCacheExecutor> cache = std::make_shared<ScriptedCacheExecutor>();
    const std::shared_ptr<QXNativeModelUpdateExecutor> update = std::make_shared<ScriptedUpdateExecutor>();

    EXPECT_EQ(ModelCacheExecutorConversion::fromCpp(ModelCacheExecutorConversion::toCpp(cache)), cache);
    EXPECT_EQ(ModelUpdateExecutorConversion::fromCpp(ModelUpdateExecutorConversion::toCpp(update)), update);
}

TEST(ProxyIdentity, OfNullIsNull)
{
    EXPECT_EQ(ModelCacheExecutorConversion::toCpp(nullptr), nullptr);
    EXPECT_EQ(ModelCacheExecutorConversion::fromCpp(nullptr), nullptr);
    EXPECT_EQ(ModelUpdateExecutorConversion::toCpp(nullptr), nullptr);
    EXPECT_EQ(ModelUpdateExecutorConversion::fromCpp(nullptr), nullptr);
}

TEST(ProxyIdentity, HasAProxyForEachProtocolOfOneObject)
{
    const auto both = std::make_shared<BothExecutors>();
    const auto coordinator = QXNativeModelCoordinator::modelCoordinatorInstance(both, both);
    const auto cacheProxy = ModelCacheExecutorConversion::toCpp(both);
    const auto updateProxy = ModelUpdateExecutorConversion::toCpp(both);

    EXPECT_EQ(cacheProxy->getCachedModelMetaData("").modelVersion, 1);
    EXPECT_EQ(updateProxy->downloadModel("", cacheProxy->getCachedModelMetaData("")).modelVersion, 2);
    EXPECT_EQ(ModelCacheExecutorConversion::fromCpp(cacheProxy), both);
    EXPECT_EQ(ModelUpdateExecutorConversion::fromCpp(updateProxy), both);
}

TEST(ProxyIdentityDeathTest, StopsTheProgramAtANativeExecutorThatIsNoProxy)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    EXPECT_DEATH(static_cast<void>(ModelCacheExecutorConversion::fromCpp(std::make_shared<NativeExecutor>())), "proxy");
}
