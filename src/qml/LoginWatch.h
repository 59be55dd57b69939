#pragma once

#include <QtCore/QtGlobal>

#include <functional>
#include <memory>

/// Calls a function whenever an account may have been linked or unlinked: when the login client tells so, after its status
/// observers, and when the application comes to the front. Main thread only. What is called may end this.
class LoginWatch final {
public:
    explicit LoginWatch(std::function<void()> changed);
    ~LoginWatch();
    Q_DISABLE_COPY_MOVE(LoginWatch)

private:
    struct Observer;

    const std::shared_ptr<Observer> _observer;
};
