#include "kits/login/default/OAuthLoginFixture.h"

#include <QtCore/QJsonDocument>

#include <utility>

namespace kovalin::test {

QString fieldOf(const QByteArray& form, const QString& name)
{
    const QUrlQuery query(QString::fromLatin1(form));
    return query.queryItemValue(name, QUrl::FullyDecoded);
}

ScriptedAnswer tokenAnswer(const QByteArray& accessToken, const QByteArray& refreshToken, const QByteArray& scope,
                           std::optional<int> expiresIn)
{
    QJsonObject answer{{QStringLiteral("access_token"), QString::fromLatin1(accessToken)},
                       {QStringLiteral("token_type"), QStringLiteral("bearer")}};
    if (!refreshToken.isEmpty()) {
        answer.insert(QStringLiteral("refresh_token"), QString::fromLatin1(refreshToken));
    }
    if (!scope.isEmpty()) {
        answer.insert(QStringLiteral("scope"), QString::fromLatin1(scope));
    }
    if (expiresIn) {
        answer.insert(QStringLiteral("expires_in"), *expiresIn);
    }
    return ScriptedAnswer::ok(QJsonDocument(answer).toJson(QJsonDocument::Compact));
}

void ScriptedTokenStore::read(const QString& key, ReadCompletion completion)
{
    auto answer = [completion = std::move(completion), secret = secret(key)] {
        completion(secret);
    };
    {
        const std::scoped_lock lock(_mutex);
        ++_reads;
        if (_holds) {
            _held.emplace_back(std::move(answer));
            return;
        }
    }
    answer();
}

void ScriptedTokenStore::write(const QString& key, const QByteArray& secret)
{
    const std::scoped_lock lock(_mutex);
    _secrets[key] = secret;
}

void ScriptedTokenStore::remove(const QString& key)
{
    const std::scoped_lock lock(_mutex);
    _secrets.erase(key);
}

std::optional<QByteArray> ScriptedTokenStore::secret(const QString& key) const
{
    const std::scoped_lock lock(_mutex);
    const auto found = _secrets.find(key);
    return found != _secrets.end() ? std::optional(found->second) : std::nullopt;
}

void ScriptedTokenStore::holdReads()
{
    const std::scoped_lock lock(_mutex);
    _holds = true;
}

void ScriptedTokenStore::releaseReads()
{
    std::vector<std::function<void()>> held;
    {
        const std::scoped_lock lock(_mutex);
        _holds = false;
        held = std::exchange(_held, {});
    }
    for (const auto& answer : held) {
        answer();
    }
}

std::size_t ScriptedTokenStore::reads() const
{
    const std::scoped_lock lock(_mutex);
    return _reads;
}

void QueryEnd::sendTo(QXSDKLoginClient& client, const QString& query, const std::optional<QJsonObject>& variables)
{
    client.fetchUserDataWithQuery(
        query, variables,
        [shared = _shared](const QJsonObject& response) {
            const std::scoped_lock lock(shared->mutex);
            ++shared->count;
            shared->response = response;
        },
        [shared = _shared](const QXSDKError& error, bool isLoggedOut) {
            const std::scoped_lock lock(shared->mutex);
            ++shared->count;
            shared->error = error;
            shared->isLoggedOut = isLoggedOut;
        });
}

void QueryEnd::wait() const
{
    ASSERT_TRUE(waitFor([this] { return hasEnded(); }));
}

int QueryEnd::count() const
{
    const std::scoped_lock lock(_shared->mutex);
    return _shared->count;
}

std::optional<QJsonObject> QueryEnd::response() const
{
    const std::scoped_lock lock(_shared->mutex);
    return _shared->response;
}

QXSDKError QueryEnd::error() const
{
    const std::scoped_lock lock(_shared->mutex);
    return _shared->error;
}

bool QueryEnd::isLoggedOut() const
{
    const std::scoped_lock lock(_shared->mutex);
    return _shared->isLoggedOut;
}

OAuthLoginFixture::OAuthLoginFixture()
    : redirect([](const QByteArray& state) -> QByteArray { return "code=the-code&state=" + state; })
{
    QXSDKClientSetup::setShared(
        {.clientId = QStringLiteral("test client"), .authenticationBaseUrl = baseUrl(), .apiBaseUrl = baseUrl()});
    server.script(kTokenPath, tokenAnswer("access-1", "refresh-1"));
    server.script(kRevokePath, ScriptedAnswer::ok({}));
    server.script(kGraphQlPath, ScriptedAnswer::ok(R"({"data":{"me":{}}})"));
    makeClient();
}

OAuthLoginFixture::~OAuthLoginFixture()
{
    if (client) {
        // A query that fails for want of an account is behind everything that the next test could still be told of.
        client->unlink();
        const QueryEnd end = fetch();
        EXPECT_TRUE(waitFor([&] { return end.hasEnded(); }));
    }
    QXSDKLoginClient::setShared(nullptr);
    client.reset();
    drainMainQueue();
    QXSDKClientSetup::setShared({});
}

void OAuthLoginFixture::makeClient()
{
    const std::size_t reads = store->reads();
    client = std::make_shared<QXSDKOAuthLoginClient>(options());
    QXSDKLoginClient::setShared(client);
    // What the test lets the store keep from here on isn't for this one.
    ASSERT_TRUE(waitFor([&] { return store->reads() > reads; }));
}

QXSDKOAuthLoginOptions OAuthLoginFixture::options()
{
    QXSDKOAuthLoginOptions options;
    options.openUrl = [this](const QUrl& url) {
        return _open(url);
    };
    options.startTimer = [this](std::chrono::milliseconds delay, std::function<void()> due) {
        const auto timer = std::make_shared<int>();
        timers.push_back({delay, std::move(due), timer});
        return timer;
    };
    options.requestTimeout = requestTimeout.value_or(options.requestTimeout);
    options.tokenStore = store;
    return options;
}

bool OAuthLoginFixture::_open(const QUrl& url)
{
    opened.push_back(url);
    if (!canOpenBrowser) {
        return false;
    }
    const QByteArray query = redirect(asked(QStringLiteral("state")).toLatin1());
    if (!query.isEmpty()) {
        server.script("/oauth2/authorize",
                      ScriptedAnswer::redirect(asked(QStringLiteral("redirect_uri")).toLatin1() + '?' + query));
        pages.emplace_back();
        _browser.dataTask({.url = url}, pages.back().handler())->resume();
    }
    return true;
}

void OAuthLoginFixture::login()
{
    client->loginFromViewController(nullptr, [this](const std::optional<QXSDKError>& error) {
        loginEnds.push_back(error);
        journal->write("completed");
    });
}

void OAuthLoginFixture::linkAccount()
{
    const std::size_t ends = loginEnds.size();
    login();
    waitForLogins(ends + 1);
    ASSERT_EQ(loginEnds.back(), std::nullopt);
    journal->words.clear();
}

QueryEnd OAuthLoginFixture::fetch()
{
    QueryEnd end;
    end.sendTo(*client);
    return end;
}

void OAuthLoginFixture::waitForLogins(std::size_t count)
{
    ASSERT_TRUE(waitFor([&] { return loginEnds.size() >= count; }));
    ASSERT_EQ(loginEnds.size(), count);
}

const std::vector<std::string>& OAuthLoginFixture::wordsAfter(std::size_t count)
{
    EXPECT_TRUE(waitFor([&] { return journal->words.size() >= count; }));
    return journal->words;
}

std::vector<ReceivedRequest> OAuthLoginFixture::requestsAt(const QByteArray& path) const
{
    std::vector<ReceivedRequest> found = server.requests();
    std::erase_if(found, [&](const auto& request) { return request.target.split('?').first() != path; });
    return found;
}

void OAuthLoginFixture::waitForRequestsAt(const QByteArray& path, std::size_t count)
{
    ASSERT_TRUE(waitFor([&] { return requestsAt(path).size() >= count; }));
}

QString OAuthLoginFixture::asked(const QString& name) const
{
    return fieldOf(opened.back().query(QUrl::FullyEncoded).toLatin1(), name);
}

QString OAuthLoginFixture::baseUrl() const
{
    return server.url(QStringLiteral("/")).toString().chopped(1);
}

} // namespace kovalin::test
