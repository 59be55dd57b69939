#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "support/LogLines.h"
#include "telemetry/PickerEvents.h"
#include "telemetry/QXSDKKovalinViewControllerLogger.h"
#include "telemetry/SharedMetrics.h"

#include <gmock/gmock.h>

#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

using namespace kovalin::test;
using testing::ElementsAreArray;

namespace {

/// What may happen to a picker, as far as its perceived start goes.
enum class Step { NoColdStart, ColdStart, ContentVisible, LoginVisible, Render, End };
constexpr std::array steps{Step::NoColdStart,  Step::ColdStart, Step::ContentVisible,
                           Step::LoginVisible, Step::Render,    Step::End};
constexpr std::size_t sequenceLength = 5;
using Sequence = std::array<Step, sequenceLength>;

/// All sequences of steps, by number.
Sequence sequenceOf(std::size_t number)
{
    Sequence sequence{};
    for (Step& step : sequence) {
        step = steps[number % steps.size()];
        number /= steps.size();
    }
    return sequence;
}
constexpr std::size_t sequenceCount = 6 * 6 * 6 * 6 * 6;

bool isVisible(Step step)
{
    return step == Step::ContentVisible || step == Step::LoginVisible;
}

/// Moments tell the steps apart that they belong to.
double momentOf(std::size_t index)
{
    return 100.0 + static_cast<double>(index);
}

/// The cold start's moment at a step; 0 where there is none.
double coldStartAt(const Sequence& sequence, std::size_t index)
{
    for (std::size_t i = index; i-- > 0;) {
        if (sequence[i] == Step::ColdStart) {
            return momentOf(i);
        }
        if (sequence[i] == Step::NoColdStart) {
            return 0;
        }
    }
    return 0;
}

struct Telling {
    std::vector<std::pair<std::string, double>> latencies;
    std::map<std::string, qint64> counts;
};

/// What a sequence has to tell, from looking at it as a whole.
Telling tellingOf(const Sequence& sequence)
{
    const auto firstFrom = [&sequence](std::size_t begin, auto&& isIt) {
        while (begin < sequence.size() && !isIt(begin)) {
            ++begin;
        }
        return begin;
    };
    const std::size_t opening =
        firstFrom(0, [&](std::size_t i) { return isVisible(sequence[i]) && coldStartAt(sequence, i) > 0; });
    const bool beganWithContent = opening < sequence.size() && sequence[opening] == Step::ContentVisible;
    const std::size_t render = firstFrom(opening, [&](std::size_t i) {
        return beganWithContent && sequence[i] == Step::Render && coldStartAt(sequence, i) > 0;
    });

    Telling telling;
    for (std::size_t i = 0; i < sequence.size(); ++i) {
        if (i == opening) {
            telling.latencies.emplace_back("perceived:open", coldStartAt(sequence, i));
        }
        if (i == render) {
            telling.latencies.emplace_back("perceived:first_render", coldStartAt(sequence, i));
        }
        if (sequence[i] == Step::Render) {
            telling.latencies.emplace_back("perceived:first_render_grid", momentOf(i));
        }
        if (sequence[i] == Step::ContentVisible) {
            ++telling.counts["picker:open"];
        }
        if (sequence[i] == Step::End && i < opening) {
            ++telling.counts["perceived:open:failure"];
        }
    }
    return telling;
}

class PerceivedStart : public PickerEvents {
protected:
    void play(const Sequence& sequence)
    {
        const auto logger = QXSDKKovalinViewControllerLogger::create(sessions);
        for (std::size_t i = 0; i < sequence.size(); ++i) {
            switch (sequence[i]) {
            case Step::NoColdStart:
                logger->setColdStartTime(0);
                break;
            case Step::ColdStart:
                logger->setColdStartTime(momentOf(i));
                break;
            case Step::ContentVisible:
                logger->firstViewBecameVisible(1, nullptr, config);
                break;
            case Step::LoginVisible:
                logger->firstViewBecameVisible(3, nullptr, config);
                break;
            case Step::Render:
                logger->logFirstRender(momentOf(i));
                break;
            case Step::End:
                logger->sessionDidEnd();
                break;
            }
        }
    }

    QXSDKKovalinStickerPickerConfig config;
};

TEST_F(PerceivedStart, IsMeasuredAndCountedInEveryOrderOfWhatHappens)
{
    const LogLines lines; // thousands of them
    SharedMetrics metrics;
    std::map<std::string, qint64> counts;
    std::vector<std::pair<std::string, double>> latencies;
    for (std::size_t number = 0; number < sequenceCount; ++number) {
        const Sequence sequence = sequenceOf(number);
        play(sequence);
        const Telling telling = tellingOf(sequence);
        latencies.insert(latencies.end(), telling.latencies.begin(), telling.latencies.end());
        for (const auto& [name, count] : telling.counts) {
            counts[name] += count;
        }
    }
    EXPECT_THAT(metrics.latencies(), ElementsAreArray(latencies));
    metrics.settle();
    std::map<std::string, qint64> arrived;
    for (const auto& [name, count] : metrics.counts()) {
        arrived[name] += count;
    }
    EXPECT_EQ(arrived, counts);
}

TEST_F(PerceivedStart, IsntMeasuredFromANegativeMoment)
{
    SharedMetrics metrics;
    const auto logger = QXSDKKovalinViewControllerLogger::create(sessions);
    logger->setColdStartTime(-1);
    logger->firstViewBecameVisible(1, nullptr, config);
    logger->logFirstRender(5);
    logger->sessionDidEnd();
    EXPECT_THAT(metrics.latencies(), testing::ElementsAre(testing::Pair("perceived:first_render_grid", 5)));
    metrics.settle();
    EXPECT_THAT(metrics.counts(), testing::UnorderedElementsAre(testing::Pair("picker:open", 1),
                                                                testing::Pair("perceived:open:failure", 1)));
}

} // namespace
