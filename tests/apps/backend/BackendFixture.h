#pragma once

#include "apps/backend/ContentFiles.h"
#include "kovalin-backend/Backend.h"
#include "platform/net/Fetching.h"
#include "platform/net/UrlSession.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <variant>

namespace kovalin::test {

/// A backend over an empty content folder, and a client.
class BackendFixture : public testing::Test {
protected:
    [[nodiscard]] TaskEnd get(const QString& path) { return fetch(session, {.url = server.url(path)}); }

    [[nodiscard]] TaskEnd post(const QString& path, const QByteArray& body)
    {
        return fetch(session, {.url = server.url(path), .method = platform::UrlRequest::Method::Post, .body = body});
    }

    /// Starts a GET and doesn't wait for its end.
    TaskEndBox start(const QString& path)
    {
        const TaskEndBox box;
        session.dataTask({.url = server.url(path)}, box.handler())->resume();
        return box;
    }

    /// Makes a rule, given as "PATH RULE".
    void rule(const QByteArray& text)
    {
        server.setAnswer(std::get<backend::PathRule>(backend::PathRule::fromText(text)));
    }

    [[nodiscard]] static QJsonObject objectIn(const TaskEnd& end) { return QJsonDocument::fromJson(end.data).object(); }

    ContentFiles content;
    backend::Backend server{{.contentFolder = content.path()}};
    platform::UrlSession session{withoutProxy()};
};

} // namespace kovalin::test
