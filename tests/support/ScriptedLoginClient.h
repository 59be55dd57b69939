#pragma once

#include "kits/login/QXSDKLoginClient.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace kovalin::test {

/// A login client whose account is what a test says, and whose requests the test answers. Any thread.
class ScriptedLoginClient final : public QXSDKLoginClient {
public:
    struct Request {
        QString query;
        std::optional<QJsonObject> variables;
        Success success;
        Failure failure;
    };

    std::atomic<bool> isLinked = true;
    std::atomic<bool> hasScope = true;

    [[nodiscard]] bool isUserLoggedIn() const override { return isLinked; }
    [[nodiscard]] bool hasAccessToScope(const QString& scope) const override
    {
        const std::scoped_lock lock(_mutex);
        _lastScope = scope;
        return hasScope;
    }
    void fetchUserDataWithQuery(const QString& query, const std::optional<QJsonObject>& variables, Success success,
                                Failure failure) override
    {
        const std::scoped_lock lock(_mutex);
        _requests.push_back({query, variables, std::move(success), std::move(failure)});
    }
    void loginFromViewController(QObject*, LoginCompletion) override {}

    /// Takes the account away, and tells.
    void unlink() override
    {
        isLinked = false;
        tellUnlinked();
    }

    /// Links an account, and tells.
    void link()
    {
        isLinked = true;
        tellLinkSucceeded();
    }
    void failLink() { tellLinkFailed(); }

    [[nodiscard]] std::size_t requestCount() const
    {
        const std::scoped_lock lock(_mutex);
        return _requests.size();
    }
    [[nodiscard]] Request request(std::size_t index) const
    {
        const std::scoped_lock lock(_mutex);
        return _requests.at(index);
    }
    [[nodiscard]] QString lastScope() const
    {
        const std::scoped_lock lock(_mutex);
        return _lastScope;
    }

private:
    mutable std::mutex _mutex;
    mutable QString _lastScope;
    std::vector<Request> _requests;
};

/// The process's login client is a scripted one for as long as this lives, and none after it.
class InstalledLoginClient final {
public:
    InstalledLoginClient() { QXSDKLoginClient::setShared(_client); }
    ~InstalledLoginClient() { QXSDKLoginClient::setShared(nullptr); }
    InstalledLoginClient(const InstalledLoginClient&) = delete;
    InstalledLoginClient& operator=(const InstalledLoginClient&) = delete;

    [[nodiscard]] ScriptedLoginClient* operator->() const { return _client.get(); }
    [[nodiscard]] ScriptedLoginClient& operator*() const { return *_client; }

private:
    std::shared_ptr<ScriptedLoginClient> _client = std::make_shared<ScriptedLoginClient>();
};

} // namespace kovalin::test
