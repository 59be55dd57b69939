#include "kits/login/QXSDKLoginClient.h"

#include "platform/dispatch/MainQueue.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/SharedSlot.h"
#include "platform/foundation/SharedWeakSet.h"

#include <utility>

using namespace kovalin::platform;

namespace {

class NoAccount final : public QXSDKLoginClient {
public:
    [[nodiscard]] bool isUserLoggedIn() const override { return false; }
    [[nodiscard]] bool hasAccessToScope(const QString&) const override { return false; }
    void fetchUserDataWithQuery(const QString&, const std::optional<QJsonObject>&, Success, Failure failure) override
    {
        failure(noClient(), true);
    }
    void loginFromViewController(QObject*, LoginCompletion completion) override
    {
        tellLoginStarted();
        tellLinkFailed([completion = std::move(completion)] {
            if (completion) {
                completion(noClient());
            }
        });
    }
    void unlink() override {}

private:
    static QXSDKError noClient() { return logoutErrorWithReason(QStringLiteral("No login client is installed")); }
};

struct Shared {
    SharedSlot<QXSDKLoginClient> client;
    const std::shared_ptr<QXSDKLoginClient> none = std::make_shared<NoAccount>();
    SharedWeakSet<QXSDKLoginStatusObserver> observers;
};

Shared& sharedState()
{
    // Never destroyed: singletons observe, and threads may still ask while the process ends.
    static auto& state = *new Shared;
    return state;
}

/// Tells the observers, then the notification centre, then `then`.
void tell(void (QXSDKLoginStatusObserver::*event)(), bool isStateChange, std::function<void()> then)
{
    dispatchMain([event, isStateChange, then = std::move(then)] {
        sharedState().observers.forEach([event](QXSDKLoginStatusObserver& observer) { (observer.*event)(); });
        if (isStateChange) {
            NotificationCenter::qxsdkCenter().postNotificationName(kQXSDKLoginClientStateChangeNotification);
        }
        if (then) {
            then();
        }
    });
}

} // namespace

QXSDKLoginClient::~QXSDKLoginClient() = default;

std::shared_ptr<QXSDKLoginClient> QXSDKLoginClient::shared()
{
    auto client = sharedState().client.load();
    return client ? client : sharedState().none;
}

void QXSDKLoginClient::setShared(std::shared_ptr<QXSDKLoginClient> client)
{
    static_cast<void>(sharedState().client.exchange(std::move(client)));
}

void QXSDKLoginClient::addLoginStatusObserver(const std::shared_ptr<QXSDKLoginStatusObserver>& observer)
{
    sharedState().observers.add(observer);
}

void QXSDKLoginClient::removeLoginStatusObserver(const QXSDKLoginStatusObserver* observer)
{
    sharedState().observers.remove(observer);
}

void QXSDKLoginClient::tellLoginStarted()
{
    dispatchMain(
        [] { NotificationCenter::qxsdkCenter().postNotificationName(kQXSDKLoginClientLoginStartNotification); });
}

void QXSDKLoginClient::tellLinkSucceeded(std::function<void()> then)
{
    tell(&QXSDKLoginStatusObserver::qxsdkLoginLinkDidSucceed, true, std::move(then));
}

void QXSDKLoginClient::tellLinkFailed(std::function<void()> then)
{
    tell(&QXSDKLoginStatusObserver::qxsdkLoginLinkDidFail, false, std::move(then));
}

void QXSDKLoginClient::tellUnlinked(std::function<void()> then)
{
    tell(&QXSDKLoginStatusObserver::qxsdkLoginDidUnlink, true, std::move(then));
}
