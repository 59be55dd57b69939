#include "learned_search/generated-src/QXNativeKovalinApiResponse.h"

#include "learned_search/generated-src/RecordDescription.h"

QXNativeKovalinApiResponse::QXNativeKovalinApiResponse(bool shouldUpdate, const std::optional<QString>& remoteModelUrl,
                                                       std::optional<std::int32_t> remoteModelVersion)
    : _shouldUpdate(shouldUpdate)
    , _remoteModelUrl(remoteModelUrl)
    , _remoteModelVersion(remoteModelVersion)
{
}

QXNativeKovalinApiResponsePtr QXNativeKovalinApiResponse::KovalinApiResponseWithShouldUpdate(
    bool shouldUpdate, const std::optional<QString>& remoteModelUrl, std::optional<std::int32_t> remoteModelVersion)
{
    return std::make_shared<const QXNativeKovalinApiResponse>(shouldUpdate, remoteModelUrl, remoteModelVersion);
}

QString QXNativeKovalinApiResponse::description() const
{
    return djinni::RecordDescription(QStringLiteral("QXNativeKovalinApiResponse"), this)
        .field(QStringLiteral("shouldUpdate"), std::int64_t(_shouldUpdate ? 1 : 0))
        .field(QStringLiteral("remoteModelUrl"), _remoteModelUrl)
        .field(QStringLiteral("remoteModelVersion"), _remoteModelVersion)
        .text();
}
