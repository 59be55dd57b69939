#include "learned_search/generated-src/QXNativeLearnedSearchClassifier.h"

#include "learned_search/LearnedSearchClassifier.h"
#include "learned_search/generated-src/ModelFileBufferConversion.h"
#include "platform/foundation/PlatformException.h"
#include "support/ModelContent.h"
#include "support/QtPrinting.h"
#include "support/RecordingLogger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace vole::learned_search::test;
using kovalin::platform::PlatformException;
using testing::ElementsAre;
using testing::IsEmpty;
using vole::test::RecordingLogger;

namespace {

std::shared_ptr<QXNativeLearnedSearchClassifier> classifierOf(const ModelContent& model)
{
    return QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(
        djinni::ModelFileBufferConversion::fromCpp(bufferOf(model)));
}

std::shared_ptr<QXNativeLearnedSearchClassifier> birthdayClassifier()
{
    ModelContent model;
    model.list({7, 9, 11});
    model.add("birthday", {{7, 0.5F}, {9, 0.25F}}, 0.5F, 1).add("birthday|cake", {{11, 0.5F}}, 0.9F, 1);
    return classifierOf(model.sortKeys());
}

/// What the native classifier says to a negative number.
std::string nativeTextOfANegativeNumber()
{
    try {
        static_cast<void>(vole::learned_search::LearnedSearchClassifier::learnedSearchClassifierWithBuffer(
                              bufferOf(ModelContent().list({7}).add("birthday", {{7, 0.5F}})))
                              ->predict("birthday", -1));
    } catch (const std::length_error& error) {
        return error.what();
    }
    return {};
}

} // namespace

TEST(QXNativeLearnedSearchClassifier, IsNotInitialisedWithoutABuffer)
{
    const RecordingLogger logger;

    const auto classifier = QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(nullptr);

    ASSERT_TRUE(classifier);
    EXPECT_FALSE(classifier->modelIsInitialized());
    EXPECT_THAT(classifier->predict(u"birthday"_s, 10), IsEmpty());
    EXPECT_THAT(classifier->getAutocompleteSuggestions(u"birthday"_s), IsEmpty());
    EXPECT_THAT(logger.messages(), ElementsAre("Model file buffer is null"));
}

TEST(QXNativeLearnedSearchClassifier, IsNotInitialisedWithAnInvalidBuffer)
{
    const RecordingLogger logger;

    const auto classifier = QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(
        QXNativeModelFileBuffer::modelFileBufferInstanceWithPath(std::nullopt));

    EXPECT_FALSE(classifier->modelIsInitialized());
    EXPECT_THAT(logger.messages(), ElementsAre("Model file buffer is in invalid state"));
}

TEST(QXNativeLearnedSearchClassifier, Predicts)
{
    const auto classifier = birthdayClassifier();

    EXPECT_TRUE(classifier->modelIsInitialized());
    EXPECT_THAT(classifier->predict(u"Birthday!"_s, 10), ElementsAre(7, 9));
    EXPECT_THAT(classifier->predict(u"birthday"_s, 1), ElementsAre(7));
    EXPECT_THAT(classifier->predict(u"birthday"_s, 0), IsEmpty());
    EXPECT_THAT(classifier->predict(QString(), 10), IsEmpty());
}

TEST(QXNativeLearnedSearchClassifier, Suggests)
{
    EXPECT_EQ(birthdayClassifier()->getAutocompleteSuggestions(u"birth"_s),
              QStringList({u"birthday cake"_s, u"birthday"_s}));
}

TEST(QXNativeLearnedSearchClassifier, RaisesTheNativeTextForANegativeNumber)
{
    const auto classifier = birthdayClassifier();
    const QString nativeText = QString::fromStdString(nativeTextOfANegativeNumber());
    ASSERT_FALSE(nativeText.isEmpty());

    try {
        static_cast<void>(classifier->predict(u"birthday"_s, -1));
        FAIL() << "nothing was raised";
    } catch (const PlatformException& exception) {
        EXPECT_EQ(exception.name(), nativeText);
        EXPECT_EQ(exception.reason(), nativeText);
    }
    EXPECT_THAT(classifier->predict(u"birthday"_s, 1), ElementsAre(7)) << "the classifier takes no harm";
}
