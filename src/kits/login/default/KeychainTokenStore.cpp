#include "kits/login/default/KeychainTokenStore.h"

#include "kits/login/default/LoginLog.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/foundation/Log.h"

#include <qt6keychain/keychain.h>

#include <utility>

using namespace kovalin::platform;

namespace {

/// Starts a job, which deletes itself when it has ended.
template <class Job>
void start(Job* job, const QString& key, std::function<void(const Job&)> ended)
{
    job->setKey(key);
    // Without it there would be a plain file where there is no keychain.
    job->setInsecureFallback(false);
    QObject::connect(job, &QKeychain::Job::finished, job, [job, ended = std::move(ended)] { ended(*job); });
    job->start();
}

void logFailure(const QKeychain::Job& job, const QString& what)
{
    if (job.error() != QKeychain::NoError && job.error() != QKeychain::EntryNotFound) {
        KOVALIN_LOG_WARNING(kovalinLogin,
                            QStringLiteral("The system's keychain can't %1 the account's link: %2, error %3")
                                .arg(what, job.errorString(), QString::number(static_cast<int>(job.error()))));
    }
}

} // namespace

KeychainTokenStore::KeychainTokenStore(const QString& service)
    : _service(service)
{
}

void KeychainTokenStore::read(const QString& key, ReadCompletion completion)
{
    dispatchMain([service = _service, key, completion = std::move(completion)] {
        using Job = QKeychain::ReadPasswordJob;
        start<Job>(new Job(service), key, [completion](const Job& job) {
            logFailure(job, QStringLiteral("read"));
            completion(job.error() == QKeychain::NoError ? std::optional(job.binaryData()) : std::nullopt);
        });
    });
}

void KeychainTokenStore::write(const QString& key, const QByteArray& secret)
{
    dispatchMain([service = _service, key, secret] {
        using Job = QKeychain::WritePasswordJob;
        auto* const job = new Job(service);
        job->setBinaryData(secret);
        start<Job>(job, key, [](const Job& ended) { logFailure(ended, QStringLiteral("keep")); });
    });
}

void KeychainTokenStore::remove(const QString& key)
{
    dispatchMain([service = _service, key] {
        using Job = QKeychain::DeletePasswordJob;
        start<Job>(new Job(service), key, [](const Job& ended) { logFailure(ended, QStringLiteral("remove")); });
    });
}
