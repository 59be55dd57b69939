#include "learned_search/ModelCoordinator.h"

#include "learned_search/LearnedSearchClassifier.h"
#include "learned_search/ModelCacheExecutor.h"
#include "learned_search/ModelUpdateExecutor.h"
#include "support/ModelContent.h"
#include "support/RecordingLogger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

using namespace vole::learned_search;
using namespace vole::learned_search::test;
using testing::ElementsAre;
using testing::IsEmpty;
using vole::test::RecordingLogger;

namespace {

/// What the executors answer, and what they were asked, in order.
struct Script {
    ModelMetaData cached{std::nullopt, std::nullopt, StatusEnums::FILE_FAILED};
    std::optional<KovalinApiResponse> response;
    ModelMetaData stored{"/models/new", 8, StatusEnums::SUCCESS};
    bool written = true;
    std::string throwing; // the call that throws instead of answering

    std::vector<std::string> calls;
    std::vector<std::string> names;
    std::optional<std::int32_t> askedVersion;
    std::optional<ModelMetaData> downloaded;

    void call(const std::string& operation, const std::string& modelName)
    {
        calls.push_back(operation);
        names.push_back(modelName);
        if (operation == throwing) {
            throw std::runtime_error(operation);
        }
    }
};

class ScriptedCacheExecutor final : public ModelCacheExecutor {
public:
    explicit ScriptedCacheExecutor(std::shared_ptr<Script> script)
        : _script(std::move(script))
    {
    }

    ModelMetaData getCachedModelMetaData(const std::string& modelName) override
    {
        _script->call("getCached", modelName);
        return _script->cached;
    }

    bool setCachedModelMetaData(const std::string& modelName, const ModelMetaData& record) override
    {
        _script->call("setCached", modelName);
        if (_script->written) {
            _script->cached = record;
        }
        return _script->written;
    }

private:
    std::shared_ptr<Script> _script;
};

class ScriptedUpdateExecutor final : public ModelUpdateExecutor {
public:
    explicit ScriptedUpdateExecutor(std::shared_ptr<Script> script)
        : _script(std::move(script))
    {
    }

    std::optional<KovalinApiResponse> getRemoteModelStatus(const std::string& modelName,
                                                           std::optional<std::int32_t> cachedVersion) override
    {
        _script->call("getRemote", modelName);
        _script->askedVersion = cachedVersion;
        return _script->response;
    }

    ModelMetaData downloadModel(const std::string& modelName, const ModelMetaData& remoteModel) override
    {
        _script->call("download", modelName);
        _script->downloaded = remoteModel;
        return _script->stored;
    }

private:
    std::shared_ptr<Script> _script;
};

std::shared_ptr<ModelCoordinator> coordinatorBy(const std::shared_ptr<Script>& script)
{
    return ModelCoordinator::modelCoordinatorInstance(std::make_shared<ScriptedCacheExecutor>(script),
                                                      std::make_shared<ScriptedUpdateExecutor>(script));
}

/// A script in which a model of version 7 is cached and the server offers version 8.
std::shared_ptr<Script> scriptOfAnUpdate()
{
    auto script = std::make_shared<Script>();
    script->cached = {"/models/old", 7, StatusEnums::SUCCESS};
    script->response = KovalinApiResponse(true, "https://models/8", 8);
    return script;
}

void expectRecord(const ModelMetaData& record, const ModelMetaData& wanted)
{
    EXPECT_EQ(record.modelUrl, wanted.modelUrl);
    EXPECT_EQ(record.modelVersion, wanted.modelVersion);
    EXPECT_EQ(record.statusCode, wanted.statusCode);
}

/// How far an update gets.
enum class Reached { Answer, Download, Write };

std::vector<std::string> callsUpTo(Reached reached)
{
    std::vector<std::string> calls{"getCached", "getRemote"};
    if (reached >= Reached::Download) {
        calls.emplace_back("download");
    }
    if (reached >= Reached::Write) {
        calls.emplace_back("setCached");
    }
    return calls;
}

struct Decision {
    const char* name;
    bool answers;
    bool shouldUpdate;
    const char* url; // null: absent
    std::optional<std::int32_t> version;
    int downloadStatus;
    bool written;

    Reached reached;
    bool result;
};

constexpr auto someUrl = "https://models/8";
constexpr std::nullopt_t absent = std::nullopt;

constexpr Decision decisions[] = {
    {"NoAnswer", false, false, nullptr, absent, 0, true, Reached::Answer, false},
    {"NoUpdate", true, false, nullptr, absent, 0, true, Reached::Answer, false},
    {"NoUpdateDespiteUrlAndVersion", true, false, someUrl, 8, 0, true, Reached::Answer, false},
    {"UpdateWithoutUrl", true, true, nullptr, 8, 0, true, Reached::Answer, false},
    {"UpdateWithoutVersion", true, true, someUrl, absent, 0, true, Reached::Answer, false},
    {"UpdateWithoutUrlAndVersion", true, true, nullptr, absent, 0, true, Reached::Answer, false},
    {"DownloadRefusedOnMainThread", true, true, someUrl, 8, 1, true, Reached::Download, false},
    {"DownloadedFileFailed", true, true, someUrl, 8, 2, true, Reached::Download, false},
    {"DownloadFailed", true, true, someUrl, 8, 3, true, Reached::Download, false},
    {"DownloadOfUnknownStatus", true, true, someUrl, 8, 99, true, Reached::Download, false},
    {"DownloadOfNegativeStatus", true, true, someUrl, 8, -1, true, Reached::Download, false},
    {"WriteFailed", true, true, someUrl, 8, 0, false, Reached::Write, false},
    {"Updated", true, true, someUrl, 8, 0, true, Reached::Write, true},
    {"UpdatedToAnOlderVersion", true, true, someUrl, -5, 0, true, Reached::Write, true},
    {"UpdatedFromAnEmptyUrl", true, true, "", 0, 0, true, Reached::Write, true},
};

class ModelUpdateDecision : public testing::TestWithParam<Decision> {};

} // namespace

TEST_P(ModelUpdateDecision, IsAsInTheTable)
{
    const Decision& row = GetParam();
    const auto script = scriptOfAnUpdate();
    const ModelMetaData old = script->cached;
    const auto url = row.url ? std::optional<std::string>(row.url) : std::nullopt;
    script->response =
        row.answers ? std::optional<KovalinApiResponse>({row.shouldUpdate, url, row.version}) : std::nullopt;
    script->stored = {"/models/new", 8, static_cast<StatusEnums>(row.downloadStatus)};
    script->written = row.written;
    const RecordingLogger logger;

    EXPECT_EQ(coordinatorBy(script)->updateLocalModel("search"), row.result);

    EXPECT_EQ(script->calls, callsUpTo(row.reached));
    EXPECT_THAT(script->names, testing::Each("search"));
    EXPECT_EQ(script->askedVersion, 7);
    if (row.reached >= Reached::Download) {
        expectRecord(script->downloaded.value(), {url, row.version, StatusEnums::SUCCESS});
    }
    expectRecord(script->cached, row.result ? script->stored : old);
    EXPECT_THAT(logger.lines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Rows, ModelUpdateDecision, testing::ValuesIn(decisions),
                         [](const auto& row) { return row.param.name; });

TEST(ModelCoordinator, RecordsWhatTheDownloadStoredAndNotWhatTheServerOffered)
{
    const auto script = scriptOfAnUpdate();
    script->stored = {"/elsewhere", std::nullopt, StatusEnums::SUCCESS};

    EXPECT_TRUE(coordinatorBy(script)->updateLocalModel("search"));

    expectRecord(script->cached, {"/elsewhere", std::nullopt, StatusEnums::SUCCESS});
}

TEST(ModelCoordinator, AsksTheServerWithTheCachedVersionAsItIs)
{
    constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();
    for (const std::optional<std::int32_t> version : {std::optional<std::int32_t>(), {0}, {-1}, {7}, {greatest}}) {
        for (const StatusEnums status : {StatusEnums::SUCCESS, StatusEnums::MAIN_THREAD_REFUSED,
                                         StatusEnums::FILE_FAILED, static_cast<StatusEnums>(99)}) {
            const auto script = std::make_shared<Script>();
            script->cached = {std::nullopt, version, status};
            script->askedVersion = 4711;

            EXPECT_FALSE(coordinatorBy(script)->updateLocalModel("search"));

            EXPECT_EQ(script->askedVersion, version);
        }
    }
}

TEST(ModelCoordinator, UpdatesWhatIsCachedInAFailedRecord)
{
    const auto script = scriptOfAnUpdate();
    script->cached = {std::nullopt, std::nullopt, StatusEnums::FILE_FAILED};

    EXPECT_TRUE(coordinatorBy(script)->updateLocalModel("search"));

    expectRecord(script->cached, script->stored);
}

TEST(ModelCoordinator, RemembersNothingBetweenCalls)
{
    const auto script = scriptOfAnUpdate();
    const auto coordinator = coordinatorBy(script);
    EXPECT_TRUE(coordinator->updateLocalModel("first"));
    EXPECT_EQ(script->askedVersion, 7);

    EXPECT_TRUE(coordinator->updateLocalModel("second"));
    EXPECT_EQ(script->askedVersion, 8) << "the record that the first update wrote";
    static_cast<void>(coordinator->getModel("third"));

    EXPECT_THAT(script->calls, ElementsAre("getCached", "getRemote", "download", "setCached", "getCached", "getRemote",
                                           "download", "setCached", "getCached"));
    EXPECT_THAT(script->names,
                ElementsAre("first", "first", "first", "first", "second", "second", "second", "second", "third"));
}

TEST(ModelCoordinator, LetsAnExecutorsExceptionPassAndWritesNothingAfterIt)
{
    const auto callsBefore = callsUpTo(Reached::Write);
    for (std::size_t call = 0; call < callsBefore.size(); ++call) {
        SCOPED_TRACE(callsBefore[call]);
        const auto script = scriptOfAnUpdate();
        const ModelMetaData old = script->cached;
        script->throwing = callsBefore[call];
        const auto coordinator = coordinatorBy(script);

        EXPECT_THROW(static_cast<void>(coordinator->updateLocalModel("search")), std::runtime_error);

        EXPECT_EQ(script->calls, std::vector(callsBefore.begin(), callsBefore.begin() + static_cast<int>(call) + 1));
        expectRecord(script->cached, old);
        script->throwing.clear();
        EXPECT_TRUE(coordinator->updateLocalModel("search")) << "the next call starts anew";
    }
}

TEST(ModelCoordinator, LetsAnExceptionPassOutOfGetModel)
{
    const auto script = std::make_shared<Script>();
    script->throwing = "getCached";

    EXPECT_THROW(static_cast<void>(coordinatorBy(script)->getModel("search")), std::runtime_error);
}

TEST(ModelCoordinator, OpensTheCachedModelWhateverItsStatus)
{
    const TemporaryFile file(ModelContent().list({7}).add("dog", {{7, 0.5F}}).toFile());
    for (const StatusEnums status :
         {StatusEnums::SUCCESS, StatusEnums::FILE_FAILED, StatusEnums::DOWNLOAD_FAILED, static_cast<StatusEnums>(-1)}) {
        const auto script = std::make_shared<Script>();
        script->cached = {file.path(), std::nullopt, status};

        const auto buffer = coordinatorBy(script)->getModel("search");

        EXPECT_TRUE(buffer->stateIsValid());
        EXPECT_THAT(LearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer)->predict("dog", 1),
                    ElementsAre(7));
        EXPECT_THAT(script->calls, ElementsAre("getCached")) << "the server isn't asked";
        EXPECT_THAT(script->names, ElementsAre("search"));
    }
}

TEST(ModelCoordinator, GivesAnInvalidBufferWhereNothingIsCached)
{
    const auto script = std::make_shared<Script>();
    const RecordingLogger logger;

    const auto buffer = coordinatorBy(script)->getModel("search");

    ASSERT_TRUE(buffer);
    EXPECT_FALSE(buffer->stateIsValid());
    EXPECT_THAT(logger.lines(), IsEmpty());
}

TEST(ModelCoordinator, GivesAnInvalidBufferForAPathThatIsGone)
{
    for (const char* path : {"", "/nonexistent/model"}) {
        const auto script = std::make_shared<Script>();
        script->cached = {path, 7, StatusEnums::SUCCESS};
        const RecordingLogger logger;

        const auto buffer = coordinatorBy(script)->getModel("search");

        ASSERT_TRUE(buffer);
        EXPECT_FALSE(buffer->stateIsValid());
        EXPECT_THAT(logger.messages(), ElementsAre("Unable to read model file"));
    }
}

TEST(ModelCoordinator, GivesABufferOfItsOwnAtEachCall)
{
    const TemporaryFile file(Bytes(64, 1));
    const auto script = std::make_shared<Script>();
    script->cached = {file.path(), 7, StatusEnums::SUCCESS};
    auto coordinator = coordinatorBy(script);

    const auto first = coordinator->getModel("search");
    const auto second = coordinator->getModel("search");
    coordinator.reset();

    EXPECT_NE(first, second);
    EXPECT_NE(first->getAddress(), second->getAddress());
    EXPECT_EQ(first->getSize(), 64) << "it lives on without the coordinator";
}

TEST(ModelCoordinator, IsANewOneAtEachCall)
{
    const auto script = std::make_shared<Script>();
    const auto cache = std::make_shared<ScriptedCacheExecutor>(script);
    const auto update = std::make_shared<ScriptedUpdateExecutor>(script);

    EXPECT_NE(ModelCoordinator::modelCoordinatorInstance(cache, update),
              ModelCoordinator::modelCoordinatorInstance(cache, update));
}

TEST(ModelCoordinator, KeepsItsExecutors)
{
    const auto script = scriptOfAnUpdate();
    auto cache = std::make_shared<ScriptedCacheExecutor>(script);
    auto update = std::make_shared<ScriptedUpdateExecutor>(script);
    const std::weak_ptr<ModelCacheExecutor> cacheAlive = cache;
    const std::weak_ptr<ModelUpdateExecutor> updateAlive = update;
    auto coordinator = ModelCoordinator::modelCoordinatorInstance(std::move(cache), std::move(update));
    EXPECT_FALSE(cacheAlive.expired());
    EXPECT_FALSE(updateAlive.expired());
    EXPECT_TRUE(coordinator->updateLocalModel("search"));

    coordinator.reset();

    EXPECT_TRUE(cacheAlive.expired());
    EXPECT_TRUE(updateAlive.expired());
}
