#include "MeasuredEngines.h"

#include "learned_search/generated-src/QXNativeModelFileBuffer.h"
#include "search/QXSDKKovalinLearnedSearchConfig.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"

#include <QtCore/QEventLoop>

#include <utility>

namespace kovalin::bench {

namespace {

/// Enabled once the fusion engine is made, which would have a model delivered otherwise.
class LateLearnedSearch final : public QXSDKKovalinLearnedSearchConfig {
public:
    void enable() { _isEnabled = true; }
    [[nodiscard]] bool isLearnedSearchEnabled() const override { return _isEnabled; }

private:
    bool _isEnabled = false; // written before any thread but the main one asks
};

} // namespace

void waitFor(const std::function<void(std::function<void()> done)>& start)
{
    QEventLoop loop;
    start([&loop] { loop.quit(); });
    loop.exec();
}

MeasuredEngines::MeasuredEngines(const FusionWorkload& workload)
    : _file(workload.model.toFile())
    , _classifier(QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(
          QXNativeModelFileBuffer::modelFileBufferInstanceWithPath(QString::fromStdString(_file.path()))))
    , _learned(std::make_shared<QXSDKKovalinLearnedSearchEngine>(_classifier))
{
    const auto prefix = std::make_shared<QXSDKKovalinPrefixSearchEngine>();
    const auto config = std::make_shared<LateLearnedSearch>();
    _fusion = std::make_shared<QXSDKKovalinFusionSearchEngine>(prefix, _learned, config);
    config->enable();
    waitFor([&](std::function<void()> done) { _learned->processPacks(workload.packs, std::move(done)); });
    waitFor([&](std::function<void()> done) { prefix->processPacks(workload.packs, std::move(done)); });
}

} // namespace kovalin::bench
