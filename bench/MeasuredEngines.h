#pragma once

#include "FusionWorkload.h"
#include "learned_search/generated-src/QXNativeLearnedSearchClassifier.h"
#include "search/QXSDKKovalinFusionSearchEngine.h"
#include "search/QXSDKKovalinLearnedSearchEngine.h"

#include <functional>
#include <memory>

namespace kovalin::bench {

/// Runs an event loop until what was started says that it is done.
void waitFor(const std::function<void(std::function<void()> done)>& start);

/// The library's engines over one workload, ready to answer. Main thread only.
class MeasuredEngines final {
public:
    /// Waits until both have taken in the packs.
    explicit MeasuredEngines(const FusionWorkload& workload);

    [[nodiscard]] const std::shared_ptr<QXSDKKovalinFusionSearchEngine>& fusion() const { return _fusion; }
    [[nodiscard]] QXSDKKovalinLearnedSearchEngine& learned() const { return *_learned; }
    [[nodiscard]] QXNativeLearnedSearchClassifier& classifier() const { return *_classifier; }

private:
    vole::learned_search::test::TemporaryFile _file;
    std::shared_ptr<QXNativeLearnedSearchClassifier> _classifier;
    std::shared_ptr<QXSDKKovalinLearnedSearchEngine> _learned;
    std::shared_ptr<QXSDKKovalinFusionSearchEngine> _fusion;
};

} // namespace kovalin::bench
