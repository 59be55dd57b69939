#include "learned_search/LearnedSearchClassifier.h"
#include "support/ModelContent.h"
#include "support/RecordingLogger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

using namespace vole::learned_search;
using namespace vole::learned_search::test;
using testing::ElementsAre;
using testing::IsEmpty;
using vole::test::RecordingLogger;
using vole::utils::logging::kErrorLevel;
using vole::utils::logging::Logger;
using vole::utils::logging::LogLevel;
using vole::utils::logging::setExternalLogger;

namespace {

constexpr auto failedVerification = "Model failed verification, please ensure that it adheres to the flatbuffer schema";

std::shared_ptr<LearnedSearchClassifier> classifierWith(const std::shared_ptr<ModelFileBuffer>& buffer)
{
    return LearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer);
}

ModelContent someModel()
{
    return ModelContent().list({7}).add("dog", {{7, 0.5F}}, 1, 1);
}

Bytes randomBytes(std::uint32_t seed)
{
    std::mt19937 random(seed);
    Bytes bytes(4096);
    for (auto& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return bytes;
}

std::shared_ptr<ModelFileBuffer> invalidBuffer()
{
    return ModelFileBuffer::modelFileBufferInstanceWithPath(std::nullopt);
}

/// A classifier on this buffer must exist, hold no model, answer nothing and log this line alone.
void expectNoModel(const std::shared_ptr<ModelFileBuffer>& buffer, const char* message)
{
    const RecordingLogger logger;

    const auto classifier = classifierWith(buffer);

    ASSERT_TRUE(classifier);
    EXPECT_FALSE(classifier->modelIsInitialized());
    for (const char* query : {"dog", "", "good morning world"}) {
        EXPECT_THAT(classifier->predict(query, 1000), IsEmpty());
        EXPECT_THAT(classifier->predict(query, 0), IsEmpty());
        EXPECT_THAT(classifier->predict(query, -1), IsEmpty());
        EXPECT_THAT(classifier->getAutocompleteSuggestions(query), IsEmpty());
    }
    EXPECT_THAT(logger.lines(), ElementsAre(RecordingLogger::Line{
                                    kErrorLevel, "[learned_search][LearnedSearchClassifierImpl]", message}));
}

class ThrowingLogger final : public Logger {
public:
    void log(LogLevel, const std::string&, const std::string& message) override { throw std::runtime_error(message); }
};

} // namespace

TEST(ClassifierConstruction, OnAModelLogsNothing)
{
    const RecordingLogger logger;

    const auto classifier = classifierWith(bufferOf(someModel()));

    EXPECT_TRUE(classifier->modelIsInitialized());
    EXPECT_THAT(classifier->predict("dog", 1), ElementsAre(7));
    EXPECT_THAT(classifier->predict("?", 1), IsEmpty());
    EXPECT_THAT(logger.lines(), IsEmpty()) << "neither then nor at queries";
}

TEST(ClassifierConstruction, OnANullBufferHoldsNoModel)
{
    expectNoModel(nullptr, "Model file buffer is null");
}

TEST(ClassifierConstruction, OnAnInvalidBufferHoldsNoModel)
{
    expectNoModel(invalidBuffer(), "Model file buffer is in invalid state");
}

TEST(ClassifierConstruction, OnAFileOfRandomBytesHoldsNoModel)
{
    for (std::uint32_t seed = 1; seed <= 100; ++seed) {
        const TemporaryFile file(randomBytes(seed));
        expectNoModel(ModelFileBuffer::modelFileBufferInstanceWithPath(file.path()), failedVerification);
    }
}

TEST(ClassifierConstruction, OnAMissingFileLeavesTheLineOfEach)
{
    const RecordingLogger logger;

    const auto classifier = classifierWith(ModelFileBuffer::modelFileBufferInstanceWithPath("/nonexistent/model"));

    EXPECT_FALSE(classifier->modelIsInitialized());
    EXPECT_THAT(logger.messages(), ElementsAre("Unable to read model file", "Model file buffer is in invalid state"));
}

TEST(ClassifierConstruction, OnNothingFailsSilentlyWithoutALogger)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();

    EXPECT_FALSE(classifierWith(nullptr)->modelIsInitialized());
    EXPECT_FALSE(classifierWith(invalidBuffer())->modelIsInitialized());
    EXPECT_FALSE(classifierWith(bufferOf(randomBytes(1)))->modelIsInitialized());

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ClassifierConstruction, LetsALoggersExceptionPassAndKeepsNothing)
{
    const auto buffer = bufferOf(randomBytes(1));
    setExternalLogger(std::make_shared<ThrowingLogger>());

    EXPECT_THROW(static_cast<void>(classifierWith(nullptr)), std::runtime_error);
    EXPECT_THROW(static_cast<void>(classifierWith(invalidBuffer())), std::runtime_error);
    EXPECT_THROW(static_cast<void>(classifierWith(buffer)), std::runtime_error);

    setExternalLogger(nullptr);
    EXPECT_EQ(buffer.use_count(), 1);
}

TEST(ClassifierLifetime, AClassifierKeepsItsBuffer)
{
    auto buffer = bufferOf(someModel());
    const std::weak_ptr<ModelFileBuffer> alive = buffer;
    auto classifier = classifierWith(buffer);

    buffer.reset();
    EXPECT_FALSE(alive.expired());
    EXPECT_THAT(classifier->predict("dog", 1), ElementsAre(7));

    classifier.reset();
    EXPECT_TRUE(alive.expired());
}

TEST(ClassifierLifetime, AClassifierWithoutAModelKeepsNoBuffer)
{
    auto buffer = bufferOf(randomBytes(1));
    const std::weak_ptr<ModelFileBuffer> alive = buffer;
    const auto classifier = classifierWith(buffer);

    buffer.reset();

    EXPECT_TRUE(alive.expired());
    EXPECT_THAT(classifier->predict("dog", 1), IsEmpty());
    auto invalid = invalidBuffer();
    const auto other = classifierWith(invalid);
    EXPECT_EQ(invalid.use_count(), 1);
}

TEST(ClassifierLifetime, ClassifiersShareABuffer)
{
    auto buffer = bufferOf(someModel());
    const std::weak_ptr<ModelFileBuffer> alive = buffer;
    auto first = classifierWith(buffer);
    const auto second = classifierWith(buffer);
    EXPECT_NE(first, second);
    buffer.reset();

    first.reset();

    EXPECT_FALSE(alive.expired());
    EXPECT_THAT(second->predict("dog", 1), ElementsAre(7));
}

TEST(ClassifierLifetime, AnswersOutliveTheClassifier)
{
    auto classifier = classifierWith(bufferOf(someModel()));
    const auto suggestions = classifier->getAutocompleteSuggestions("d");
    const auto comics = classifier->predict("dog", 1);

    classifier.reset();

    EXPECT_THAT(suggestions, ElementsAre("dog"));
    EXPECT_THAT(comics, ElementsAre(7));
}
