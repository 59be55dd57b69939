#include "kits/login/default/RedirectPage.h"

namespace {

// The page has no script, loads nothing and says nobody where it came from.
QByteArray answer(const QByteArray& status, const QByteArray& body)
{
    return "HTTP/1.1 " + status +
           "\r\n"
           "Content-Type: text/html; charset=utf-8\r\n"
           "Content-Length: " +
           QByteArray::number(body.size()) +
           "\r\n"
           "Content-Security-Policy: default-src 'none'; style-src 'unsafe-inline'\r\n"
           "X-Content-Type-Options: nosniff\r\n"
           "Referrer-Policy: no-referrer\r\n"
           "Cache-Control: no-store\r\n"
           "Connection: close\r\n"
           "\r\n" +
           body;
}

} // namespace

QByteArray redirectPage(const QString& applicationName)
{
    const QString where = applicationName.isEmpty() ? QStringLiteral("the app") : applicationName.toHtmlEscaped();
    const QString page = QStringLiteral("<!doctype html>\n"
                                        "<html lang=\"en\"><head><meta charset=\"utf-8\">"
                                        "<meta name=\"viewport\" content=\"width=device-width\">"
                                        "<title>That's it</title>"
                                        "<style>body{font:1.2em sans-serif;text-align:center;margin:20vh 1em}</style>"
                                        "</head><body><h1>That's it</h1>"
                                        "<p>You can close this page and return to ") +
                         where + QStringLiteral(".</p></body></html>\n");
    return answer(QByteArrayLiteral("200 OK"), page.toUtf8());
}

QByteArray refusal(const QByteArray& status)
{
    return answer(status, {});
}
