#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

/// What an authorization server has granted. A value.
struct OAuthLink {
    QByteArray accessToken;
    std::optional<QByteArray> refreshToken = std::nullopt;

    /// Seconds since 1970 from which on a new access token is fetched before this one is used; absent where the server didn't say
    /// how long it lasts.
    std::optional<double> refreshTime = std::nullopt;

    QStringList scopes = {};

    /// The authentication service that it is of.
    QString authenticationBaseUrl = {};

    friend bool operator==(const OAuthLink&, const OAuthLink&) = default;
};

/// The link in the answer of a token endpoint that came at `now`, in seconds since 1970; absent where it isn't one that can be
/// used. An answer that doesn't tell the scopes has granted `scopesAsked`.
[[nodiscard]] std::optional<OAuthLink> linkFromTokenAnswer(const QByteArray& body, const QStringList& scopesAsked,
                                                           double now);

/// The link after a refresh with this answer: what the answer doesn't replace stays.
[[nodiscard]] std::optional<OAuthLink> refreshedLink(const OAuthLink& link, const QByteArray& body, double now);

/// What is kept of a link in a token store, and the link in it; absent where that is damaged.
[[nodiscard]] QByteArray secretOf(const OAuthLink& link);
[[nodiscard]] std::optional<OAuthLink> linkFromSecret(const QByteArray& secret);
