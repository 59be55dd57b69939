#pragma once

#include "platform/net/UrlSession.h"

#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>

namespace kovalin::test {

/// In the browser's place: a user who approves what the development server's login page asks for. Any thread.
inline bool approveLogin(const QUrl& url)
{
    QUrl page = url;
    QUrlQuery query(page);
    query.addQueryItem(QStringLiteral("auto"), QStringLiteral("approve"));
    page.setQuery(query);
    platform::UrlSession::shared().dataTask({.url = page}, [](const auto&, const auto&, const auto&) {})->resume();
    return true;
}

} // namespace kovalin::test
