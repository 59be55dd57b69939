#include "learned_search/generated-src/QXNativeLearnedSearchClassifier.h"

#include "learned_search/LearnedSearchClassifier.h"
#include "learned_search/generated-src/Exceptions.h"
#include "learned_search/generated-src/LearnedSearchClassifierConversion.h"
#include "learned_search/generated-src/ListConversion.h"
#include "learned_search/generated-src/ModelFileBufferConversion.h"
#include "learned_search/generated-src/NumberConversion.h"
#include "learned_search/generated-src/StringConversion.h"

using namespace djinni;
using vole::learned_search::LearnedSearchClassifier;

QXNativeLearnedSearchClassifier::QXNativeLearnedSearchClassifier(const IdentityCache::Enrolment& enrolment,
                                                                 const std::shared_ptr<LearnedSearchClassifier>& cpp)
    : _handle(enrolment, cpp)
{
}

std::shared_ptr<QXNativeLearnedSearchClassifier> QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(
    const std::shared_ptr<QXNativeModelFileBuffer>& buffer)
{
    return guarded("QXNativeLearnedSearchClassifier learnedSearchClassifierWithBuffer:", [&] {
        return LearnedSearchClassifierConversion::fromCpp(
            LearnedSearchClassifier::learnedSearchClassifierWithBuffer(ModelFileBufferConversion::toCpp(buffer)));
    });
}

QList<std::int32_t> QXNativeLearnedSearchClassifier::predict(const QString& query, std::int32_t topN) const
{
    return guarded("QXNativeLearnedSearchClassifier predict:topN:", [&] {
        return ListConversion<Int32Conversion>::fromCpp(
            _handle->predict(StringConversion::toCpp(query), Int32Conversion::toCpp(topN)));
    });
}

QStringList QXNativeLearnedSearchClassifier::getAutocompleteSuggestions(const QString& query) const
{
    return guarded("QXNativeLearnedSearchClassifier getAutocompleteSuggestions:", [&] {
        return ListConversion<StringConversion>::fromCpp(
            _handle->getAutocompleteSuggestions(StringConversion::toCpp(query)));
    });
}

bool QXNativeLearnedSearchClassifier::modelIsInitialized() const
{
    return guarded("QXNativeLearnedSearchClassifier modelIsInitialized",
                   [&] { return BoolConversion::fromCpp(_handle->modelIsInitialized()); });
}
