#include "kovalin-backend/accounts/Grants.h"

#include "platform/foundation/Clock.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QRandomGenerator>

#include <algorithm>
#include <array>
#include <utility>

namespace kovalin::backend {

namespace {

constexpr double codeSeconds = 600; // the longest that RFC 6749 recommends
constexpr char idEnd = '.';

QByteArray base64Url(const QByteArray& bytes)
{
    return bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

QByteArray freshText()
{
    std::array<quint32, 8> words{}; // 256 bits
    QRandomGenerator::system()->fillRange(words.data(), static_cast<qsizetype>(words.size()));
    return base64Url(QByteArray(reinterpret_cast<const char*>(words.data()), sizeof(words)));
}

QByteArray freshToken(const QByteArray& id)
{
    return id + idEnd + freshText();
}

bool isProven(const QByteArray& challenge, const QByteArray& verifier)
{
    return challenge == base64Url(QCryptographicHash::hash(verifier, QCryptographicHash::Sha256));
}

} // namespace

Grants::Grants(std::chrono::seconds accessTokenLife)
    : _accessTokenLife(accessTokenLife)
{
}

QByteArray Grants::add(Consent consent)
{
    const QByteArray id = freshText();
    const QByteArray code = freshToken(id);
    const double codeEnd = platform::currentTimeSeconds() + codeSeconds;
    const std::lock_guard lock(_mutex);
    _grants.push_back({.id = id,
                       .consent = std::move(consent),
                       .codeEnd = codeEnd,
                       .code = code,
                       .accessToken = {},
                       .refreshToken = {}});
    if (_grants.size() > kMostKept) {
        _grants.pop_front();
    }
    return code;
}

std::optional<IssuedTokens> Grants::redeem(const CodeProof& proof)
{
    const std::lock_guard lock(_mutex);
    const auto grant = _grantOf(proof.code);
    if (grant == _grants.end()) {
        return std::nullopt;
    }
    const Consent& consent = grant->consent;
    if (grant->code != proof.code || platform::currentTimeSeconds() >= grant->codeEnd ||
        consent.clientId != proof.clientId || consent.redirectUri != proof.redirectUri ||
        !isProven(consent.challenge, proof.verifier)) {
        _grants.erase(grant);
        return std::nullopt;
    }
    grant->code.clear();
    return _issue(*grant);
}

std::optional<IssuedTokens> Grants::refresh(const QByteArray& refreshToken, const QString& clientId)
{
    const std::lock_guard lock(_mutex);
    const auto grant = _grantOf(refreshToken);
    if (grant == _grants.end()) {
        return std::nullopt;
    }
    if (grant->refreshToken != refreshToken || grant->consent.clientId != clientId) {
        _grants.erase(grant);
        return std::nullopt;
    }
    return _issue(*grant);
}

void Grants::revoke(const QByteArray& token)
{
    const std::lock_guard lock(_mutex);
    const auto grant = _grantOf(token);
    if (grant != _grants.end() && (token == grant->accessToken || token == grant->refreshToken)) {
        _grants.erase(grant);
    }
}

std::optional<GrantedAccess> Grants::access(const QByteArray& accessToken) const
{
    const std::lock_guard lock(_mutex);
    const auto grant =
        std::ranges::find_if(_grants, [&](const Grant& each) { return each.accessToken == accessToken; });
    if (accessToken.isEmpty() || grant == _grants.end() || platform::currentTimeSeconds() >= grant->accessTokenEnd) {
        return std::nullopt;
    }
    return GrantedAccess{grant->consent.accountId, grant->consent.scopes};
}

void Grants::expireAccessTokens()
{
    const std::lock_guard lock(_mutex);
    for (Grant& grant : _grants) {
        grant.accessToken.clear();
    }
}

std::deque<Grants::Grant>::iterator Grants::_grantOf(const QByteArray& token)
{
    const QByteArray id = token.first(std::max(token.indexOf(idEnd), qsizetype(0)));
    return std::ranges::find_if(_grants, [&id](const Grant& grant) { return grant.id == id; });
}

IssuedTokens Grants::_issue(Grant& grant) const
{
    grant.accessToken = freshToken(grant.id);
    grant.refreshToken = freshToken(grant.id);
    grant.accessTokenEnd = platform::currentTimeSeconds() + static_cast<double>(_accessTokenLife.count());
    return {grant.accessToken, grant.refreshToken, _accessTokenLife, grant.consent.scopes};
}

} // namespace kovalin::backend
