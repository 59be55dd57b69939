#include "platform/net/SessionWorker.h"

#include <QtNetwork/QNetworkProxyFactory>

#include <optional>
#include <utility>

namespace kovalin::platform {

namespace {

// The system's settings for the session's own manager; Qt's switch for it would turn the host's requests too.
class SystemProxies final : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override { return systemProxyForQuery(query); }
};

TransferOutcome cancelled()
{
    return {.error = UrlError{UrlError::Kind::Cancelled, QStringLiteral("The request was cancelled")}};
}

} // namespace

SessionWorker::SessionWorker(UrlSessionOptions options)
    : _options(std::move(options))
{
}

SessionWorker::~SessionWorker() = default;

void SessionWorker::start(const Task& task)
{
    if (_isEnding || _isInvalidated || task->isCancelled) {
        _deliver(task, cancelled());
        return;
    }
    if (auto defect = defectOf(task->request)) {
        _deliver(task, {.error = std::move(defect)});
        return;
    }
    auto* const transfer = new Transfer(_networkManager(), _options.tls, std::move(task->request));
    _transfers.emplace(task, transfer);
    transfer->start([this, task](TransferOutcome outcome) {
        _transfers.extract(task).mapped()->deleteLater();
        _deliver(task, std::move(outcome));
    });
}

void SessionWorker::cancel(const Task& task)
{
    if (const auto found = _transfers.find(task); found != _transfers.end()) {
        found->second->end(cancelled());
    }
}

void SessionWorker::endAll()
{
    _isEnding = true;
    // A handler may change the list.
    while (!_transfers.empty()) {
        _transfers.begin()->second->end(cancelled());
    }
}

void SessionWorker::invalidate()
{
    _isInvalidated = true;
    endAll();
}

void SessionWorker::leaveThread()
{
    _manager.reset();
    _isEnding = false;
}

QNetworkAccessManager& SessionWorker::_networkManager()
{
    if (_manager == nullptr) {
        _manager = std::make_unique<QNetworkAccessManager>();
        if (_options.proxy == UrlSessionOptions::Proxy::System) {
            _manager->setProxyFactory(new SystemProxies);
        } else {
            _manager->setProxy(QNetworkProxy::NoProxy);
        }
    }
    return *_manager;
}

void SessionWorker::_deliver(const Task& task, TransferOutcome outcome) noexcept
{
    // The last word on whether a cancel came in time.
    if (task->isCancelled) {
        outcome = cancelled();
    }
    const DataHandler handler = std::exchange(task->handler, nullptr);
    handler(outcome.data, outcome.response, outcome.error);
}

} // namespace kovalin::platform
