#pragma once

#include "kovalin-backend/Backend.h"
#include "kovalin-host/HostOptions.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <functional>
#include <memory>

namespace kovalin::host {

class HostRecord;

/// What a host sets up before it makes a picker: where the servers are, the account link, configurations, metrics and analytics;
/// here with a server in the same process where none is given. Main thread.
///
/// Lifetime: takes back at its end what it installed. Pickers go before.
class HostKits final {
public:
    /// Throws BackendError where the server can't start.
    HostKits(const HostOptions& options, const std::shared_ptr<HostRecord>& record);
    ~HostKits();
    Q_DISABLE_COPY_MOVE(HostKits)

    /// Has the configurations refreshed, and runs the event loop until they are, or the server takes longer than anybody would wait.
    /// To be called before the first picker is made: whether the learned engine takes part is decided then, for the process.
    void refreshConfigs() const;

    /// Makes a rule of the server's ("PATH RULE"). `done` is called once, on any thread, maybe before this returns: with what went
    /// wrong, or an empty text.
    void setAnswer(const QByteArray& rule, const std::function<void(const QString& fault)>& done) const;

private:
    std::unique_ptr<backend::Backend> _backend; // null where it is another program
    QUrl _baseUrl;
};

} // namespace kovalin::host
