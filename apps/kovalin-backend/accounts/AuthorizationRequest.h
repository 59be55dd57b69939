#pragma once

#include "kovalin-backend/Answer.h"
#include "kovalin-backend/accounts/FormValues.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <utility>
#include <variant>

namespace kovalin::backend {

/// What a client sends somebody to the authorization page for. A value.
struct AuthorizationRequest {
    QString clientId;
    QString redirectUri; // an address of this machine
    QString state;       // empty for none
    QByteArray challenge;
    QStringList scopes;

    /// What is wrong with it is an answer: for whoever looks at the page where the client or its address can't be trusted, else a
    /// redirect that tells the client (RFC 6749, 4.1.2.1).
    [[nodiscard]] static std::variant<AuthorizationRequest, Answer> fromValues(const FormValues& values);

    /// Sends the browser back to the client with these values and the state.
    [[nodiscard]] Answer redirect(const QList<std::pair<QByteArray, QString>>& values) const;
};

/// Whether this is the scope that queries about somebody's own avatar need, under whatever address the client knows the server.
[[nodiscard]] bool isAvatarScope(const QString& scope);

} // namespace kovalin::backend
