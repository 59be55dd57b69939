#include "kovalin-backend/accounts/AuthorizationPage.h"

#include <QtCore/QUrl>

namespace kovalin::backend {

namespace {

// %1: the client, %2: the hidden fields, %3: the accounts, %4: the scopes
const QString& pageText()
{
    static const QString text = QStringLiteral(R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Link your account</title>
<style>
body { margin: 0; background: #f4f2fb; color: #2b2540; font: 16px/1.5 system-ui, sans-serif; }
form { box-sizing: border-box; max-width: 26rem; margin: 8vh auto; padding: 2rem; background: #fff; border-radius: 1.2rem; }
h1 { margin: 0 0 .5rem; font-size: 1.4rem; }
fieldset { margin: 1.2rem 0; padding: 0; border: 0; }
label { display: flex; gap: .8rem; align-items: center; padding: .5rem; border-radius: .8rem; }
label:hover { background: #f4f2fb; }
img, .none { width: 3rem; height: 3rem; }
.none { border-radius: 50%; background: #e2ddf3; }
code { overflow-wrap: anywhere; font-size: .8rem; }
button { display: block; width: 100%; margin-top: .6rem; padding: .7rem; border: 0; border-radius: .8rem; background: #e9e5f7;
    color: inherit; font: inherit; cursor: pointer; }
button.main { background: #6c4de6; color: #fff; }
</style>
</head>
<body>
<form method="get">
<h1>Link your account</h1>
<p><strong>%1</strong> would like to show stickers with your avatar.</p>
%2<fieldset>
%3</fieldset>
<p>It asks for: %4</p>
<button class="main" name="auto" value="approve">Allow</button>
<button name="auto" value="approve-without-scope">Allow, but without my avatar</button>
<button name="auto" value="deny">No, thanks</button>
</form>
</body>
</html>
)");
    return text;
}

QString hiddenFields(const FormValues& values)
{
    QString fields;
    for (const auto& [name, value] : values.all()) {
        if (name != u"account" && name != u"auto") {
            fields += QStringLiteral("<input type=\"hidden\" name=\"%1\" value=\"%2\">\n")
                          .arg(name.toHtmlEscaped(), value.toHtmlEscaped());
        }
    }
    return fields;
}

QString pictureOf(const Account& account)
{
    return account.avatarId ? QStringLiteral("<img src=\"/avatars/%1.png?size=96\" alt=\"\">")
                                  .arg(QString::fromLatin1(QUrl::toPercentEncoding(*account.avatarId)))
                            : QStringLiteral("<span class=\"none\"></span>");
}

QString choices(const QList<Account>& accounts)
{
    QString text;
    for (const Account& account : accounts) {
        text += QStringLiteral("<label><input type=\"radio\" name=\"account\" value=\"%1\"%2>%3 %4</label>\n")
                    .arg(account.id.toHtmlEscaped(), text.isEmpty() ? QStringLiteral(" checked") : QString(),
                         pictureOf(account), account.name.toHtmlEscaped());
    }
    return text;
}

QString scopesText(const QStringList& scopes)
{
    return scopes.isEmpty() ? QStringLiteral("nothing")
                            : QStringLiteral("<code>%1</code>").arg(scopes.join(QStringLiteral(", ")).toHtmlEscaped());
}

} // namespace

Answer authorizationPage(const AuthorizationRequest& request, const FormValues& values, const QList<Account>& accounts)
{
    const QString page = pageText().arg(request.clientId.toHtmlEscaped(), hiddenFields(values), choices(accounts),
                                        scopesText(request.scopes));
    return {.headers = {{"Content-Type", "text/html; charset=utf-8"},
                        {"Content-Security-Policy",
                         "default-src 'none'; img-src 'self'; style-src 'unsafe-inline'; frame-ancestors 'none'"},
                        {"Cache-Control", "no-store"}},
            .body = page.toUtf8()};
}

} // namespace kovalin::backend
