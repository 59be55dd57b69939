#include "utils/Logging.h"

#include "support/RecordingLogger.h"
#include "utils/Log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <functional>
#include <stdexcept>
#include <thread>

using namespace vole::utils::logging;
using testing::ElementsAre;
using vole::test::RecordingLogger;

namespace {

/// Does with a line what a test wants.
class CallingLogger final : public Logger {
public:
    using Call = std::function<void(LogLevel, const std::string&, const std::string&)>;

    explicit CallingLogger(Call call)
        : _call(std::move(call))
    {
    }

    void log(LogLevel level, const std::string& tag, const std::string& message) override
    {
        _call(level, tag, message);
    }

private:
    Call _call;
};

/// What counts over all loggers of a test.
struct Counters {
    std::atomic<int> lines = 0;
    std::atomic<int> made = 0;
    std::atomic<int> gone = 0;
};

class CountingLogger final : public Logger {
public:
    explicit CountingLogger(Counters& counters)
        : _counters(counters)
    {
        ++_counters.made;
    }
    ~CountingLogger() override { ++_counters.gone; }

    void log(LogLevel, const std::string&, const std::string&) override { ++_counters.lines; }

private:
    Counters& _counters;
};

constexpr int threadCount = 8;
constexpr int linesPerThread = 2000;

/// Logs from eight threads and calls `replace` over and over meanwhile.
void logFromManyThreadsWhile(const std::function<void()>& replace)
{
    std::barrier start(threadCount + 1);
    std::atomic<int> running = threadCount;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&start, &running] {
            start.arrive_and_wait();
            for (int line = 0; line < linesPerThread; ++line) {
                logError("tag", "message");
            }
            --running;
        });
    }
    start.arrive_and_wait();
    while (running > 0) {
        replace();
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace

TEST(Logging, WithoutALoggerPrintsNothing)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();

    logError("tag", "message");
    logToExternalLogger(LogLevel{0}, "tag", "message");
    logToExternalLogger(LogLevel{100}, "tag", "message");

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Logging, HandsOverLevelTagAndMessageAsTheyAre)
{
    const RecordingLogger logger;

    logError("[learned_search][ModelFileBuffer]", "Unable to read model file");

    EXPECT_THAT(logger.lines(), ElementsAre(RecordingLogger::Line{LogLevel{1}, "[learned_search][ModelFileBuffer]",
                                                                  "Unable to read model file"}));
}

TEST(Logging, HandsOverEveryLevel)
{
    const RecordingLogger logger;

    logToExternalLogger(LogLevel{-3}, "a", "b");
    log<LogLevel{0}>("c", [](auto out) { fmt::format_to(out, "d"); });
    log<LogLevel{700}>("e", [](auto out) { fmt::format_to(out, "f"); });

    EXPECT_THAT(logger.lines(),
                ElementsAre(RecordingLogger::Line{LogLevel{-3}, "a", "b"}, RecordingLogger::Line{LogLevel{0}, "c", "d"},
                            RecordingLogger::Line{LogLevel{700}, "e", "f"}));
}

TEST(Logging, FormatsAMessageOnce)
{
    const RecordingLogger logger;
    int calls = 0;

    log<kErrorLevel>("tag", [&calls](auto out) { fmt::format_to(out, "{} of {}", ++calls, "many"); });

    EXPECT_EQ(calls, 1);
    EXPECT_THAT(logger.messages(), ElementsAre("1 of many"));
}

TEST(Logging, TakesAMessageWithoutAnythingToFillInAsItStands)
{
    const RecordingLogger logger;

    logError("", "");
    logError("{}", "{} and {1:x} and }{");
    logToExternalLogger(kErrorLevel, std::string("t\0g", 3), std::string("m\0g", 3));

    EXPECT_THAT(logger.lines(),
                ElementsAre(RecordingLogger::Line{kErrorLevel, "", ""},
                            RecordingLogger::Line{kErrorLevel, "{}", "{} and {1:x} and }{"},
                            RecordingLogger::Line{kErrorLevel, std::string("t\0g", 3), std::string("m\0g", 3)}));
}

TEST(Logging, ANullPointerRemovesTheLogger)
{
    const RecordingLogger logger;
    logError("tag", "heard");
    setExternalLogger(nullptr);

    logError("tag", "not heard");

    EXPECT_THAT(logger.messages(), ElementsAre("heard"));
}

TEST(Logging, AReplacedLoggerHearsNothingMoreAndIsLetGo)
{
    int heard = 0;
    auto logger = std::make_shared<CallingLogger>([&heard](auto...) { ++heard; });
    const std::weak_ptr<Logger> alive = logger;
    setExternalLogger(logger);
    logger.reset();
    logError("tag", "message");
    EXPECT_FALSE(alive.expired());

    const RecordingLogger next;
    logError("tag", "next");

    EXPECT_EQ(heard, 1);
    EXPECT_TRUE(alive.expired());
    EXPECT_THAT(next.messages(), ElementsAre("next"));
}

TEST(Logging, KeepsALoggerAliveUntilItsCallEnds)
{
    std::weak_ptr<Logger> alive;
    bool livedOn = false;
    {
        auto logger = std::make_shared<CallingLogger>([&alive, &livedOn](auto...) {
            setExternalLogger(nullptr);
            livedOn = !alive.expired();
        });
        alive = logger;
        setExternalLogger(logger);
    }

    logError("tag", "message");

    EXPECT_TRUE(livedOn);
    EXPECT_TRUE(alive.expired());
}

TEST(Logging, ALoggerMayLogItself)
{
    std::vector<std::string> heard;
    setExternalLogger(std::make_shared<CallingLogger>([&heard](auto, auto&, const std::string& message) {
        heard.push_back(message);
        if (heard.size() == 1) {
            logError("tag", "inner");
        }
    }));

    logError("tag", "outer");
    setExternalLogger(nullptr);

    EXPECT_THAT(heard, ElementsAre("outer", "inner"));
}

TEST(Logging, LetsALoggersExceptionPassAndTheLoggerGo)
{
    auto logger = std::make_shared<CallingLogger>([](auto...) { throw std::runtime_error("disk full"); });
    setExternalLogger(logger);

    EXPECT_THROW(logError("tag", "message"), std::runtime_error);

    EXPECT_EQ(logger.use_count(), 2) << "the test's pointer and the installed one, but none of the call's";
    setExternalLogger(nullptr);
    EXPECT_EQ(logger.use_count(), 1);
}

TEST(Logging, LetsAMessagesExceptionPassBeforeAnythingIsLogged)
{
    const RecordingLogger logger;

    EXPECT_THROW(log<kErrorLevel>("tag", [](auto) { throw std::runtime_error("no message"); }), std::runtime_error);

    EXPECT_TRUE(logger.lines().empty());
}

TEST(Logging, TheInternalLevelChangesNothingThatCanBeSeen)
{
    for (const int level : {-100, 0, 1, 2, 100}) {
        SCOPED_TRACE(level);
        setInternalLoggerLogLevel(LogLevel{level});
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        logError("tag", "nobody hears");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

        const RecordingLogger logger;
        logError("tag", "heard");
        EXPECT_THAT(logger.messages(), ElementsAre("heard"));
    }
    setInternalLoggerLogLevel(LogLevel{0});
}

TEST(LoggingThreads, EachLineReachesOneLoggerWhileLoggersAreReplaced)
{
    Counters counters;
    setExternalLogger(std::make_shared<CountingLogger>(counters));

    logFromManyThreadsWhile([&counters] { setExternalLogger(std::make_shared<CountingLogger>(counters)); });

    EXPECT_EQ(counters.lines, threadCount * linesPerThread);
    EXPECT_EQ(counters.gone, counters.made - 1) << "only the last one is still installed";
    setExternalLogger(nullptr);
    EXPECT_EQ(counters.gone, counters.made);
}

TEST(LoggingThreads, LinesGoNowhereWhileNoLoggerIsInstalled)
{
    Counters counters;

    logFromManyThreadsWhile([&counters] {
        setExternalLogger(std::make_shared<CountingLogger>(counters));
        setExternalLogger(nullptr);
    });

    EXPECT_LE(counters.lines, threadCount * linesPerThread);
    EXPECT_EQ(counters.gone, counters.made);
}
