#include "kits/login/default/OAuthLoginFixture.h"
#include "kits/login/default/WithoutKeychain.h"

#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

using namespace kovalin::test;

namespace {

/// Everything that is logged for as long as this lives. Any thread.
class LogCapture final {
public:
    LogCapture()
    {
        const std::scoped_lock lock(mutex);
        text.clear();
        _previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) {
            const std::scoped_lock inner(mutex);
            text += line.toUtf8() + '\n';
        });
    }
    ~LogCapture() { qInstallMessageHandler(_previous); }
    Q_DISABLE_COPY_MOVE(LogCapture)

    [[nodiscard]] QByteArray lines() const
    {
        const std::scoped_lock lock(mutex);
        return text;
    }

private:
    // Static, since a message handler is a plain function.
    static inline std::mutex mutex;
    static inline QByteArray text;

    QtMessageHandler _previous = nullptr;
};

/// The user's folders are those of a folder of their own for as long as this lives.
class OwnHome final {
public:
    OwnHome()
    {
        for (const char* const name :
             {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
            _previous.emplace_back(name, qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt);
            qputenv(name, (_folder.path() + QLatin1Char('/') + QLatin1String(name)).toUtf8());
        }
    }
    ~OwnHome()
    {
        for (const auto& [name, value] : _previous) {
            if (value) {
                qputenv(name, *value);
            } else {
                qunsetenv(name);
            }
        }
    }
    Q_DISABLE_COPY_MOVE(OwnHome)

    /// All files, one behind the other, with their names.
    [[nodiscard]] QByteArray everything() const
    {
        QByteArray all;
        QDirIterator files(_folder.path(), QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            all += file.fileName().toUtf8() + '\n';
            if (file.open(QIODevice::ReadOnly)) {
                all += file.readAll();
            }
        }
        return all;
    }

private:
    QTemporaryDir _folder;
    std::vector<std::pair<const char*, std::optional<QByteArray>>> _previous;
};

class OAuthSecrecy : public OAuthLoginFixture {
protected:
    /// A life with all that can go wrong in it.
    void liveThrough()
    {
        server.script(kTokenPath, tokenAnswer("SECRET-access-1", "SECRET-refresh-1", {}, 3600));
        redirect = [](const QByteArray& state) -> QByteArray {
            return "code=SECRET-code&state=" + state;
        };
        linkAccount();
        fetch().wait();
        clock.advance(std::chrono::hours(1));
        server.script(kTokenPath, tokenAnswer("SECRET-access-2", "SECRET-refresh-2", {}, 3600));
        fetch().wait();
        for (const auto& answer : {ScriptedAnswer::withStatus(500, "SECRET-body"), ScriptedAnswer::closed(),
                                   ScriptedAnswer::ok("SECRET-garbage"), ScriptedAnswer::withStatus(401)}) {
            server.script(kGraphQlPath, answer);
            fetch().wait();
        }
        for (const auto& answer :
             {ScriptedAnswer::withStatus(500, "SECRET-body"), ScriptedAnswer::closed(),
              ScriptedAnswer::ok(R"({"access_token":"SECRET broken"})"), ScriptedAnswer::withStatus(400)}) {
            server.script(kTokenPath, answer);
            login();
            fetch().wait();
        }
        redirect = [](const QByteArray&) {
            return QByteArray("code=SECRET-code&state=SECRET-state&error=SECRET-error");
        };
        const std::size_t ends = loginEnds.size();
        login();
        ASSERT_TRUE(waitFor([&] { return loginEnds.size() > ends; }));
        server.script(kRevokePath, ScriptedAnswer::withStatus(500, "SECRET-body"));
        client->unlink();
        waitForRequestsAt(kRevokePath, 1);
        fetch().wait();
    }
};

TEST_F(OAuthSecrecy, KeepsSecretsOutOfLogLinesAndFiles)
{
    leaveKeychainUnreachable();
    const LogCapture log;
    const OwnHome home;
    auto given = options();
    given.tokenStore = nullptr;
    client = std::make_shared<QXSDKOAuthLoginClient>(given);
    QXSDKLoginClient::setShared(client);
    liveThrough();
    ASSERT_TRUE(waitFor([&] { return log.lines().contains("revoked at the server"); }));
    ASSERT_TRUE(waitFor([&] { return log.lines().contains("keychain can't"); }));

    const QByteArray lines = log.lines();
    const QByteArray files = home.everything();
    EXPECT_TRUE(lines.contains("can't be linked"));
    std::vector<QByteArray> secrets{"SECRET"};
    for (const auto& request : requestsAt(kTokenPath)) {
        secrets.push_back(fieldOf(request.body, QStringLiteral("code_verifier")).toLatin1());
    }
    for (const QUrl& url : opened) {
        secrets.push_back(fieldOf(url.query(QUrl::FullyEncoded).toLatin1(), QStringLiteral("state")).toLatin1());
    }
    for (const QByteArray& secret : secrets) {
        EXPECT_TRUE(secret.isEmpty() || !lines.contains(secret)) << lines.constData();
        EXPECT_TRUE(secret.isEmpty() || !files.contains(secret)) << files.constData();
    }
}

} // namespace
