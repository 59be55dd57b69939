#pragma once

#include <QtCore/QMetaMethod>
#include <QtCore/QObject>

#include <functional>

namespace kovalin::platform {

/// Calls a function at a signal that is known only at run time. Main thread only; belongs to the object that it listens
/// to.
class QuickObserver final : public QObject {
    Q_OBJECT

public:
    QuickObserver(QObject& sender, std::function<void()> handler);

    bool listenTo(const QMetaMethod& signal);

private Q_SLOTS:
    void tell();

private:
    const std::function<void()> _handler;
};

} // namespace kovalin::platform
