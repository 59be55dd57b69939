#include "platform/foundation/Application.h"

#include <QtGui/QGuiApplication>

#include <atomic>

namespace kovalin::platform {

namespace {

std::atomic<ApplicationState>& currentState()
{
    // Never destroyed: threads may still ask while the process ends.
    static auto& state = *new std::atomic<ApplicationState>(ApplicationState::Active);
    return state;
}

ApplicationState stateFrom(Qt::ApplicationState state)
{
    switch (state) {
    case Qt::ApplicationActive:
        return ApplicationState::Active;
    case Qt::ApplicationInactive:
        return ApplicationState::Inactive;
    case Qt::ApplicationHidden:
    case Qt::ApplicationSuspended:
        break;
    }
    return ApplicationState::Background;
}

/// Called in the constructor of each application object.
void followApplication()
{
    currentState() = ApplicationState::Active;
    auto* const application = QCoreApplication::instance();
    if (auto* const withWindows = qobject_cast<QGuiApplication*>(application)) {
        QObject::connect(withWindows, &QGuiApplication::applicationStateChanged, application,
                         [](Qt::ApplicationState state) { Application::setState(stateFrom(state)); });
    }
    QObject::connect(application, &QCoreApplication::aboutToQuit, application,
                     [] { Application::setState(ApplicationState::Background); });
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(followApplication)

ApplicationState Application::state()
{
    return currentState().load();
}

void Application::setState(ApplicationState state)
{
    const ApplicationState old = currentState().exchange(state);
    auto& center = NotificationCenter::defaultCenter();
    if (old == ApplicationState::Active && state != ApplicationState::Active) {
        center.postNotificationName(UIApplicationWillResignActiveNotification);
    } else if (old != ApplicationState::Active && state == ApplicationState::Active) {
        center.postNotificationName(UIApplicationDidBecomeActiveNotification);
    }
}

} // namespace kovalin::platform
