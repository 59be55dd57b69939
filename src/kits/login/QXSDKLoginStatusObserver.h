#pragma once

#include "QXSDKKovalinKit/Export.h"

/// Told what becomes of the link to the user's account. Called on the main thread.
class QXSDKKOVALINKIT_EXPORT QXSDKLoginStatusObserver {
public:
    virtual ~QXSDKLoginStatusObserver();

    /// An account is linked now, or the linked one has granted more.
    virtual void qxsdkLoginLinkDidSucceed() {}

    /// Linking failed, or the user refused; what was linked before stays.
    virtual void qxsdkLoginLinkDidFail() {}

    /// No account is linked any more.
    virtual void qxsdkLoginDidUnlink() {}
};
