#pragma once

#include "learned_search/generated-src/CacheHandle.h"

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <cstdint>
#include <memory>

class QXNativeModelFileBuffer;

namespace vole::learned_search {
class LearnedSearchClassifier;
}

/// A native classifier: answers free text with the comics that fit it, and with suggestions of what to type. Any thread, any
/// number of them at a time; calls run on the caller's. Native errors are PlatformExceptions that carry the native text.
class QXNativeLearnedSearchClassifier final {
public:
    /// For the bridge alone.
    QXNativeLearnedSearchClassifier(const djinni::IdentityCache::Enrolment& enrolment,
                                    const std::shared_ptr<vole::learned_search::LearnedSearchClassifier>& cpp);

    /// Never null. A null buffer, one in an invalid state, and one that holds no model make a classifier that isn't
    /// initialised and answers nothing.
    [[nodiscard]] static std::shared_ptr<QXNativeLearnedSearchClassifier>
    learnedSearchClassifierWithBuffer(const std::shared_ptr<QXNativeModelFileBuffer>& buffer);

    /// The ids of the comics that fit the query, best first, at most `topN`. Throws PlatformException for a negative one.
    [[nodiscard]] QList<std::int32_t> predict(const QString& query, std::int32_t topN) const;

    /// The model's texts that begin with the query's words, the most popular first.
    [[nodiscard]] QStringList getAutocompleteSuggestions(const QString& query) const;

    /// Whether there is a usable model. Never changes.
    [[nodiscard]] bool modelIsInitialized() const;

private:
    friend struct djinni::WrapperConversion<QXNativeLearnedSearchClassifier,
                                            vole::learned_search::LearnedSearchClassifier>;

    djinni::NativeHandle<vole::learned_search::LearnedSearchClassifier> _handle;
};
