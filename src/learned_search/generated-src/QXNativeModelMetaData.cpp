#include "learned_search/generated-src/QXNativeModelMetaData.h"

#include "learned_search/generated-src/RecordDescription.h"
#include "platform/foundation/KeyedArchiveFormat.h"
#include "platform/foundation/KeyedArchiver.h"
#include "platform/foundation/KeyedUnarchiver.h"

#include <utility>

using kovalin::platform::KeyedArchiver;
using kovalin::platform::KeyedUnarchiver;

namespace {

std::optional<std::int32_t> decodeVersion(const KeyedUnarchiver& coder)
{
    const std::optional<qint64> version = coder.decodeInteger(QStringLiteral("modelVersion"));
    if (!version) {
        return std::nullopt;
    }
    if (!std::in_range<std::int32_t>(*version)) {
        kovalin::platform::KeyedArchiveFormat::throwUnarchiveException(
            QStringLiteral("key \"modelVersion\": integer of 32 bits wanted, %1 found").arg(*version));
    }
    return static_cast<std::int32_t>(*version);
}

} // namespace

QXNativeModelMetaData::QXNativeModelMetaData(const std::optional<QString>& modelUrl,
                                             std::optional<std::int32_t> modelVersion, QXNativeStatusEnums statusCode)
    : _modelUrl(modelUrl)
    , _modelVersion(modelVersion)
    , _statusCode(statusCode)
{
}

QXNativeModelMetaData::QXNativeModelMetaData(const KeyedUnarchiver& coder)
    : _modelUrl(coder.decodeString(QStringLiteral("modelUrl")))
    , _modelVersion(decodeVersion(coder))
    , _statusCode(static_cast<QXNativeStatusEnums>(coder.decodeInteger(QStringLiteral("statusCode")).value_or(0)))
{
}

QXNativeModelMetaDataPtr QXNativeModelMetaData::ModelMetaDataWithModelUrl(const std::optional<QString>& modelUrl,
                                                                          std::optional<std::int32_t> modelVersion,
                                                                          QXNativeStatusEnums statusCode)
{
    return std::make_shared<const QXNativeModelMetaData>(modelUrl, modelVersion, statusCode);
}

QString QXNativeModelMetaData::description() const
{
    return djinni::RecordDescription(QStringLiteral("QXNativeModelMetaData"), this)
        .field(QStringLiteral("modelUrl"), _modelUrl)
        .field(QStringLiteral("modelVersion"), _modelVersion)
        .field(QStringLiteral("statusCode"), static_cast<std::int64_t>(_statusCode))
        .text();
}

void QXNativeModelMetaData::encodeWithCoder(KeyedArchiver& coder) const
{
    coder.encodeObject(QStringLiteral("modelUrl"), _modelUrl);
    if (_modelVersion) {
        coder.encodeInteger(QStringLiteral("modelVersion"), *_modelVersion);
    }
    coder.encodeInteger(QStringLiteral("statusCode"), static_cast<qint64>(_statusCode));
}
