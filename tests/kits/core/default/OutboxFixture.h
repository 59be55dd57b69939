#pragma once

#include "kits/core/default/Outbox.h"
#include "kits/core/default/OutboxFile.h"
#include "platform/dispatch/Gate.h"
#include "platform/dispatch/SerialQueue.h"
#include "support/LoopbackServer.h"
#include "support/ManualClock.h"
#include "support/ManualDelayClock.h"
#include "support/ScriptedRandom.h"
#include "support/WaitFor.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kovalin::test {

/// A batch as a server got it.
struct PostedBatch {
    QString id;
    qint64 dropped = 0;
    QStringList ids;
    std::vector<std::string> entries;
};

/// An outbox on a folder of its own, which posts to a server, with time and chance standing still. Jobs of the outbox run on its
/// queue all the same; `settle` waits for them.
class OutboxFixture : public testing::Test {
protected:
    /// A body of plain JSON: {"batch", "dropped", "entries": [{"id", "text"}]}.
    static QByteArray bodyOf(const kits::OutboxBatch& batch)
    {
        QJsonArray entries;
        for (const kits::OutboxEntry& entry : batch.entries) {
            entries.append(QJsonObject{{QStringLiteral("id"), entry.id.toString(QUuid::WithoutBraces)},
                                       {QStringLiteral("text"), QString::fromUtf8(entry.bytes)}});
        }
        return QJsonDocument(QJsonObject{{QStringLiteral("batch"), batch.id.toString(QUuid::WithoutBraces)},
                                         {QStringLiteral("dropped"), static_cast<qint64>(batch.dropped)},
                                         {QStringLiteral("entries"), entries}})
            .toJson();
    }

    /// Small limits: 20 entries of 1000 bytes for an hour; batches of 5 entries of 100 bytes or after 30 seconds; repeated after
    /// 8 seconds, doubled up to a minute.
    [[nodiscard]] kits::OutboxOptions options() const
    {
        using namespace std::chrono_literals;
        return {.path = path(),
                .label = QStringLiteral("test outbox"),
                .limits = {.maxBytes = 1000, .maxEntries = 20, .maxAge = 1h},
                .batch = {.maxEntries = 5, .maxBytes = 100, .longestWait = 30s},
                .retry = {.first = 8s, .longest = 60s, .longestRetryAfter = 120s},
                .request = [url = server.url(QStringLiteral("/post"))](const kits::OutboxBatch& batch) {
                    return platform::UrlRequest{
                        .url = url, .method = platform::UrlRequest::Method::Post, .body = bodyOf(batch)};
                }};
    }

    void open() { outbox.emplace(options()); }
    void add(const std::vector<std::string>& texts)
    {
        for (const std::string& text : texts) {
            outbox->add(QByteArray::fromStdString(text));
        }
    }
    /// Returns once what was added has been taken in, and jobs that are due have run.
    void settle() { finish(*outbox->queue()); }
    void advance(std::chrono::milliseconds duration)
    {
        clock.advance(duration);
        delays.advance(duration);
        settle();
    }
    /// Lets half a second pass, by which what was added is on disk.
    void write()
    {
        settle();
        advance(std::chrono::milliseconds(500));
    }
    /// Ends the outbox and waits until it has written.
    void close()
    {
        const auto queue = outbox->queue();
        outbox.reset();
        finish(*queue);
    }

    void answer(ScriptedAnswer answer) { server.script("/post", std::move(answer)); }

    [[nodiscard]] std::vector<PostedBatch> posted() const
    {
        std::vector<PostedBatch> batches;
        for (const ReceivedRequest& request : server.requests()) {
            const QJsonObject body = QJsonDocument::fromJson(request.body).object();
            PostedBatch batch{.id = body[QStringLiteral("batch")].toString(),
                              .dropped = body[QStringLiteral("dropped")].toInteger(),
                              .ids = {},
                              .entries = {}};
            for (const auto entry : body[QStringLiteral("entries")].toArray()) {
                batch.ids.append(entry[QStringLiteral("id")].toString());
                batch.entries.push_back(entry[QStringLiteral("text")].toString().toStdString());
            }
            batches.push_back(std::move(batch));
        }
        return batches;
    }
    /// Waits for the server's `count`th request, and gives it.
    [[nodiscard]] PostedBatch batch(std::size_t count) const
    {
        server.waitForRequests(count);
        return posted().at(count - 1);
    }

    [[nodiscard]] QString path() const { return folder.filePath(QStringLiteral("outbox.sqlite")); }
    [[nodiscard]] std::vector<std::string> onDisk() const
    {
        std::vector<std::string> texts;
        for (const QByteArray& entry : storedAt(path()).entries) {
            texts.push_back(entry.toStdString());
        }
        return texts;
    }
    [[nodiscard]] bool isOnDisk(const std::vector<std::string>& texts) const
    {
        return waitFor([&] { return onDisk() == texts; });
    }

    QTemporaryDir folder;
    LoopbackServer server;
    ManualClock clock;
    ManualDelayClock delays;
    const ScriptedRandom random{[] {
        return 0U;
    }}; // takes nothing off a delay
    std::optional<kits::Outbox> outbox;
};

} // namespace kovalin::test
