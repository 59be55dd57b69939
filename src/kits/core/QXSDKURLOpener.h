#pragma once

#include "QXSDKKovalinKit/Export.h"

#include <QtCore/QUrl>

#include <functional>
#include <memory>

/// Opens addresses outside of the host: in the system's browser, in a store or in another app. Main thread only,
/// where nothing else is said.
///
/// A host that knows more of its device than Qt does, or that wants to show pages itself, installs an opener of its
/// own.
class QXSDKKOVALINKIT_EXPORT QXSDKURLOpener {
public:
    using Completion = std::function<void(bool isOpened)>;

    virtual ~QXSDKURLOpener();

    /// Whether there is something on the device that opens addresses of this kind, as far as that is known.
    [[nodiscard]] virtual bool canOpenURL(const QUrl& url) = 0;

    /// Opens the address, whatever `canOpenURL` says. The completion, which may be empty, is called exactly once,
    /// perhaps before this returns: true if something took the address.
    virtual void openURL(const QUrl& url, Completion completion) = 0;

    /// The opener that is installed for the process; never null. Before one is installed it is the system's, which
    /// can open pages of the web, addresses of mail and files, and of other apps doesn't know whether they are there:
    /// it says that it can't open theirs, and tries if it is asked to. Any thread.
    [[nodiscard]] static std::shared_ptr<QXSDKURLOpener> shared();

    /// Installs an opener; null takes it away. Any thread.
    static void setShared(std::shared_ptr<QXSDKURLOpener> opener);
};
