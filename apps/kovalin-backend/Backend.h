#pragma once

#include "kovalin-backend/AnswerRule.h"
#include "kovalin-backend/BackendEvents.h"
#include "kovalin-backend/EventsRecord.h"
#include "kovalin-backend/MetricsRecord.h"
#include "kovalin-backend/Request.h"

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include <chrono>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <vector>

namespace kovalin::backend {

/// A backend can't start. The text names the folder or the port and what is wrong with it.
class BackendError final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct BackendOptions {
    /// Where what is served lies; see `ContentFolder`.
    QString contentFolder;

    /// 0: one that the system chooses.
    quint16 port = 0;

    /// The rules to begin with.
    QList<PathRule> answers = {};

    BackendEvents events = {};

    /// How long an access token is good.
    std::chrono::seconds accessTokenLife = std::chrono::hours(1);
};

/// The development server: an HTTP server on 127.0.0.1, on a thread of its own, which serves a content folder, links accounts,
/// answers queries in their name, takes metrics and analytics events, and can be told to fail, path by path. A client's base
/// URLs are `baseUrl()` for content, `baseUrl()` + "/accounts" for authentication and `baseUrl()` + "/api" for the rest. Any
/// thread.
///
/// Bodies of requests are at most 4 MiB long; 413 answers longer ones.
///
/// Requires: an application object lives when it is made, a QGuiApplication if there shall be pictures; the death of that object
/// ends the server, and what waits for requests then waits for ever. Not to be destroyed in one of its events.
class Backend final {
public:
    /// Listens when it returns. Throws BackendError when there is no such folder or the port is taken.
    explicit Backend(BackendOptions options);

    /// Closes all connections, whether their requests were answered or not, and frees the port before it returns.
    ~Backend();
    Backend(const Backend&) = delete;
    Backend& operator=(const Backend&) = delete;

    /// "http://127.0.0.1:PORT".
    [[nodiscard]] QUrl baseUrl() const;

    /// The address of `path`, which begins with "/" and may have a query.
    [[nodiscard]] QUrl url(const QString& path) const;

    /// Makes a rule; it holds for requests that come after the return, and soon for those that were left without an
    /// answer (`Nothing`). What is delayed stays so. Paths under "/control/" have no rules.
    void setAnswer(const PathRule& rule);

    /// The latest requests, in order, but for those under "/control/".
    [[nodiscard]] std::vector<Request> requests() const;

    /// Blocks until `count` requests or more have arrived since the start. They may not have been answered yet.
    void waitForRequests(std::size_t count) const;

    /// The metrics that were taken. An entry is among them before the client has its answer.
    [[nodiscard]] TakenMetrics metrics() const;

    /// The analytics events that were taken. An event is counted before the client has its answer.
    [[nodiscard]] TakenEvents events() const;

    /// Ends all access tokens before their time; what can be refreshed can still be. Holds for requests that come after the return.
    void expireAccessTokens();

private:
    struct State;

    const std::unique_ptr<State> _state;
};

} // namespace kovalin::backend
