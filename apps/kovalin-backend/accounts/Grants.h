#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <chrono>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>

namespace kovalin::backend {

/// What somebody has agreed to. A value.
struct Consent {
    QString clientId;
    QString redirectUri;
    QByteArray challenge; // of PKCE's method S256
    QString accountId;
    QStringList scopes;
};

/// What a client brings for its first tokens. A value.
struct CodeProof {
    QByteArray code;
    QString clientId;
    QString redirectUri;
    QByteArray verifier;
};

struct IssuedTokens {
    QByteArray accessToken;
    QByteArray refreshToken;
    std::chrono::seconds accessTokenLife;
    QStringList scopes;
};

struct GrantedAccess {
    QString accountId;
    QStringList scopes;
};

/// What accounts have granted to clients, with the codes and tokens that stand for it. In memory alone, and only the latest
/// grants: a server may run for weeks. Any thread. Times are those of the installed clock.
///
/// - A code is good for one try, within 10 minutes. The second try ends the grant.
/// - A refresh replaces both tokens, and what was replaced is good no more; a refresh with an old refresh token ends the grant.
class Grants final {
public:
    static constexpr std::size_t kMostKept = 1000;

    explicit Grants(std::chrono::seconds accessTokenLife);

    /// Gives the code.
    [[nodiscard]] QByteArray add(Consent consent);

    /// Absent unless everything fits.
    [[nodiscard]] std::optional<IssuedTokens> redeem(const CodeProof& proof);
    [[nodiscard]] std::optional<IssuedTokens> refresh(const QByteArray& refreshToken, const QString& clientId);

    /// Ends the grant that the token, of either kind, is of. Nothing for any other text.
    void revoke(const QByteArray& token);

    /// Absent for what is no access token, or none any more.
    [[nodiscard]] std::optional<GrantedAccess> access(const QByteArray& accessToken) const;

    /// Ends all access tokens, as if their time were over; refresh tokens stay.
    void expireAccessTokens();

private:
    /// Codes and tokens begin with the grant's id.
    struct Grant {
        QByteArray id;
        Consent consent;
        double codeEnd = 0;
        QByteArray code;         // empty once it was tried
        QByteArray accessToken;  // empty while there is none
        QByteArray refreshToken; // as well
        double accessTokenEnd = 0;
    };

    [[nodiscard]] std::deque<Grant>::iterator _grantOf(const QByteArray& token);
    [[nodiscard]] IssuedTokens _issue(Grant& grant) const;

    const std::chrono::seconds _accessTokenLife;
    mutable std::mutex _mutex;
    std::deque<Grant> _grants; // guarded by _mutex; oldest first
};

} // namespace kovalin::backend
