#pragma once

#include "kits/login/QXSDKLoginClient.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/NotificationCenter.h"

#include <memory>
#include <string>
#include <vector>

namespace kovalin::test {

/// What the login tells, as words in order: "start", "succeeded", "failed", "unlinked" and "changed", those behind the first
/// with " in" where the shared client has an account at that moment, and all with " elsewhere" where they aren't told on the main
/// thread, the only one that this may be used on.
class LoginJournal final : public QXSDKLoginStatusObserver, public std::enable_shared_from_this<LoginJournal> {
public:
    /// Observes for as long as it lives.
    [[nodiscard]] static std::shared_ptr<LoginJournal> observing()
    {
        auto journal = std::make_shared<LoginJournal>();
        QXSDKLoginClient::addLoginStatusObserver(journal);
        auto& center = platform::NotificationCenter::qxsdkCenter();
        center.addObserver(journal, &LoginJournal::started, kQXSDKLoginClientLoginStartNotification);
        center.addObserver(journal, &LoginJournal::changed, kQXSDKLoginClientStateChangeNotification);
        return journal;
    }

    void qxsdkLoginLinkDidSucceed() override { write("succeeded"); }
    void qxsdkLoginLinkDidFail() override { write("failed"); }
    void qxsdkLoginDidUnlink() override { write("unlinked"); }
    void started() { note("start"); }
    void changed() { write("changed"); }

    void write(std::string word)
    {
        if (QXSDKLoginClient::shared()->isUserLoggedIn()) {
            word += " in";
        }
        note(std::move(word));
    }

    std::vector<std::string> words;

private:
    void note(std::string word)
    {
        if (!platform::isMainThread()) {
            word += " elsewhere";
        }
        words.push_back(std::move(word));
    }
};

} // namespace kovalin::test
