#pragma once

#include "kits/login/QXSDKLoginClient.h"

#include <optional>

/// A login's completion. It is called exactly once: at the latest at this object's end, with an error. Whoever has to call it
/// holds it, so that is where the telling is dropped since the application object goes.
///
/// One thread at a time.
class LoginEnd final {
public:
    /// `completion` may be empty.
    explicit LoginEnd(QXSDKLoginClient::LoginCompletion completion);
    ~LoginEnd();
    Q_DISABLE_COPY_MOVE(LoginEnd)

    /// Later calls do nothing.
    void tell(const std::optional<QXSDKError>& error);

private:
    QXSDKLoginClient::LoginCompletion _completion; // null once called
};
