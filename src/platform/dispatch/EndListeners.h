#pragma once

#include <QtCore/QtGlobal>

#include <memory>
#include <mutex>
#include <vector>

namespace kovalin::platform {

/// Hears of the application object's end. Private to this folder.
class EndListener {
public:
    virtual ~EndListener();

    /// On the main thread, when jobs are no longer taken and those that run aren't waited for yet.
    virtual void applicationWillEnd() = 0;
};

/// Those who hear of it, held weakly. Private to this folder; any thread.
class EndListeners final {
public:
    EndListeners() = default;
    ~EndListeners() = default;
    Q_DISABLE_COPY_MOVE(EndListeners)

    void add(std::weak_ptr<EndListener> listener);

    /// Tells all.
    void tell();

private:
    std::mutex _mutex;
    std::vector<std::weak_ptr<EndListener>> _listeners; // guarded by _mutex; dead ones go when one is added
};

} // namespace kovalin::platform
