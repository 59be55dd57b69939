#include "qml/LoginWatch.h"

#include "kits/login/QXSDKLoginClient.h"
#include "platform/foundation/Application.h"
#include "platform/foundation/NotificationCenter.h"

#include <utility>

using kovalin::platform::NotificationCenter;

struct LoginWatch::Observer {
    void tell()
    {
        const auto call = changed; // which may be taken away while it runs
        if (call) {
            call();
        }
    }

    std::function<void()> changed;
};

LoginWatch::LoginWatch(std::function<void()> changed)
    : _observer(std::make_shared<Observer>(Observer{std::move(changed)}))
{
    NotificationCenter::qxsdkCenter().addObserver(_observer, &Observer::tell, kQXSDKLoginClientStateChangeNotification);
    NotificationCenter::defaultCenter().addObserver(_observer, &Observer::tell,
                                                    kovalin::platform::UIApplicationDidBecomeActiveNotification);
}

LoginWatch::~LoginWatch()
{
    // A post that is under way holds the observer.
    _observer->changed = nullptr;
}
