#include "platform/ui/QuickObserver.h"

#include <utility>

namespace kovalin::platform {

QuickObserver::QuickObserver(QObject& sender, std::function<void()> handler)
    : QObject(&sender)
    , _handler(std::move(handler))
{
}

bool QuickObserver::listenTo(const QMetaMethod& signal)
{
    static const QMetaMethod slot = staticMetaObject.method(staticMetaObject.indexOfSlot("tell()"));
    return connect(parent(), signal, this, slot);
}

void QuickObserver::tell()
{
    _handler();
}

} // namespace kovalin::platform
