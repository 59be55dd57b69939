#pragma once

#include "kits/login/QXSDKLoginClient.h"

#include <QtCore/QPointer>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kovalin::test {

/// A login client without an account, whose logins a test begins and ends. Main thread only.
class RecordingLoginClient final : public QXSDKLoginClient {
public:
    struct Login {
        QPointer<QObject> viewController;
        LoginCompletion completion;
    };

    [[nodiscard]] bool isUserLoggedIn() const override { return false; }
    [[nodiscard]] bool hasAccessToScope(const QString&) const override { return false; }
    void fetchUserDataWithQuery(const QString&, const std::optional<QJsonObject>&, Success, Failure failure) override
    {
        failure({}, true);
    }
    void loginFromViewController(QObject* viewController, LoginCompletion completion) override
    {
        logins.push_back({viewController, std::move(completion)});
        if (onLogin) {
            onLogin();
        }
    }
    void unlink() override {}

    using QXSDKLoginClient::tellLinkFailed;
    using QXSDKLoginClient::tellLinkSucceeded;
    using QXSDKLoginClient::tellLoginStarted;

    std::vector<Login> logins;
    std::function<void()> onLogin;
};

/// The process's login client for as long as this lives, and none after it.
class InstalledRecordingLogin final {
public:
    InstalledRecordingLogin() { QXSDKLoginClient::setShared(_client); }
    ~InstalledRecordingLogin() { QXSDKLoginClient::setShared(nullptr); }
    InstalledRecordingLogin(const InstalledRecordingLogin&) = delete;
    InstalledRecordingLogin& operator=(const InstalledRecordingLogin&) = delete;

    [[nodiscard]] RecordingLoginClient* operator->() const { return _client.get(); }

private:
    std::shared_ptr<RecordingLoginClient> _client = std::make_shared<RecordingLoginClient>();
};

} // namespace kovalin::test
