#pragma once

#include <QtCore/QString>

#include <cstdint>
#include <memory>
#include <optional>

/// The server's answer to the question for a newer model. Immutable; any thread.
class QXNativeKovalinApiResponse final {
public:
    QXNativeKovalinApiResponse(bool shouldUpdate, const std::optional<QString>& remoteModelUrl,
                               std::optional<std::int32_t> remoteModelVersion);

    /// A shared record of the same fields; never null.
    [[nodiscard]] static std::shared_ptr<const QXNativeKovalinApiResponse>
    KovalinApiResponseWithShouldUpdate(bool shouldUpdate, const std::optional<QString>& remoteModelUrl,
                                       std::optional<std::int32_t> remoteModelVersion);

    /// Whether the server has a model that the client should fetch.
    [[nodiscard]] bool shouldUpdate() const { return _shouldUpdate; }
    /// Where to fetch it; absent where there is none.
    [[nodiscard]] const std::optional<QString>& remoteModelUrl() const { return _remoteModelUrl; }
    /// Its version; absent where there is none.
    [[nodiscard]] std::optional<std::int32_t> remoteModelVersion() const { return _remoteModelVersion; }

    /// One line for people, with the object's address.
    [[nodiscard]] QString description() const;

private:
    bool _shouldUpdate;
    std::optional<QString> _remoteModelUrl;
    std::optional<std::int32_t> _remoteModelVersion;
};

using QXNativeKovalinApiResponsePtr = std::shared_ptr<const QXNativeKovalinApiResponse>;
