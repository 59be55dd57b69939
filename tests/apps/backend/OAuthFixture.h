#pragma once

#include "apps/backend/BackendFixture.h"
#include "apps/backend/RawClient.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QJsonArray>
#include <QtCore/QMap>
#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>

namespace kovalin::test {

/// A backend, and what a program says to it to link an account, step by step.
class OAuthFixture : public BackendFixture {
protected:
    using Fields = QMap<QString, QString>;

    static constexpr const char* kVerifier = "a-verifier-that-is-as-long-as-one-has-to-be-0";
    const QString kRedirect = QStringLiteral("http://127.0.0.1:9/oauth2/redirect");
    const QString avatarScope = server.url(QStringLiteral("/accounts/oauth2/api/user.kovalin.avatar")).toString();

    [[nodiscard]] static QByteArray encoded(const Fields& fields)
    {
        QByteArray form;
        for (auto field = fields.begin(); field != fields.end(); ++field) {
            form += (form.isEmpty() ? "" : "&") + field.key().toUtf8() + '=' + QUrl::toPercentEncoding(field.value());
        }
        return form;
    }

    /// What is asked of the authorization page; with `changes`, where an empty text takes a field away.
    [[nodiscard]] QByteArray authorizePath(const Fields& changes = {}) const
    {
        const QByteArray hash = QCryptographicHash::hash(kVerifier, QCryptographicHash::Sha256);
        Fields fields{
            {QStringLiteral("response_type"), QStringLiteral("code")},
            {QStringLiteral("client_id"), QStringLiteral("tests")},
            {QStringLiteral("redirect_uri"), kRedirect},
            {QStringLiteral("scope"), avatarScope + QStringLiteral(" other")},
            {QStringLiteral("state"), QStringLiteral("a state & more")},
            {QStringLiteral("code_challenge_method"), QStringLiteral("S256")},
            {QStringLiteral("code_challenge"),
             QString::fromLatin1(hash.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals))}};
        for (auto change = changes.begin(); change != changes.end(); ++change) {
            fields.insert(change.key(), change.value());
        }
        fields.removeIf([](const auto& field) { return field.value().isEmpty(); });
        return "/accounts/oauth2/authorize?" + encoded(fields);
    }

    /// Where the page sends the browser; an empty address where it doesn't.
    [[nodiscard]] QUrl redirected(const Fields& changes)
    {
        RawClient client(server.baseUrl());
        client.send("GET " + authorizePath(changes) + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
        const QByteArray answer = client.readToEnd();
        const QByteArray header = "\r\nLocation: ";
        const qsizetype start = answer.indexOf(header);
        if (!answer.startsWith("HTTP/1.1 302 ") || start < 0) {
            return {};
        }
        const QByteArray rest = answer.sliced(start + header.size());
        return QUrl(QString::fromLatin1(rest.first(rest.indexOf('\r'))), QUrl::StrictMode);
    }

    [[nodiscard]] static QString valueIn(const QUrl& url, const QString& name)
    {
        return QUrlQuery(url).queryItemValue(name, QUrl::FullyDecoded);
    }

    [[nodiscard]] QString code(const QString& account = {}, const QString& choice = QStringLiteral("approve"))
    {
        return valueIn(redirected({{QStringLiteral("auto"), choice}, {QStringLiteral("account"), account}}),
                       QStringLiteral("code"));
    }

    [[nodiscard]] TaskEnd askToken(const Fields& fields)
    {
        return post(QStringLiteral("/accounts/oauth2/token"), encoded(fields));
    }

    [[nodiscard]] Fields redeeming(const QString& code) const
    {
        return {{QStringLiteral("grant_type"), QStringLiteral("authorization_code")},
                {QStringLiteral("code"), code},
                {QStringLiteral("redirect_uri"), kRedirect},
                {QStringLiteral("client_id"), QStringLiteral("tests")},
                {QStringLiteral("code_verifier"), QString::fromLatin1(kVerifier)}};
    }

    [[nodiscard]] static Fields refreshing(const QString& token)
    {
        return {{QStringLiteral("grant_type"), QStringLiteral("refresh_token")},
                {QStringLiteral("refresh_token"), token},
                {QStringLiteral("client_id"), QStringLiteral("tests")}};
    }

    /// The answer of the token endpoint for an account that has agreed.
    [[nodiscard]] QJsonObject link(const QString& account = {}, const QString& choice = QStringLiteral("approve"))
    {
        return objectIn(askToken(redeeming(code(account, choice))));
    }

    [[nodiscard]] static QString errorIn(const TaskEnd& end) { return objectIn(end).value(u"error").toString(); }

    [[nodiscard]] TaskEnd query(const QString& token, const QByteArray& body)
    {
        return fetch(session, {.url = server.url(QStringLiteral("/api/graphql")),
                               .method = platform::UrlRequest::Method::Post,
                               .headers = {{"Authorization", "Bearer " + token.toLatin1()}},
                               .body = body});
    }

    [[nodiscard]] static QByteArray bodyOf(const QString& document, const QJsonValue& variables = QJsonValue::Undefined)
    {
        QJsonObject body{{QStringLiteral("query"), document}};
        if (!variables.isUndefined()) {
            body.insert(QStringLiteral("variables"), variables);
        }
        return QJsonDocument(body).toJson();
    }

    /// The status of a query with this token.
    [[nodiscard]] int accessWith(const QString& token)
    {
        return query(token, bodyOf(QStringLiteral("{me{kovalin{avatar}}}"))).status();
    }
};

} // namespace kovalin::test
