#pragma once

#include "learned_search/generated-src/QXNativeStatusEnums.h"

#include <QtCore/QString>

#include <cstdint>
#include <memory>
#include <optional>

namespace kovalin::platform {
class KeyedArchiver;
class KeyedUnarchiver;
} // namespace kovalin::platform

/// What is known of one model. Immutable; any thread.
class QXNativeModelMetaData final {
public:
    QXNativeModelMetaData(const std::optional<QString>& modelUrl, std::optional<std::int32_t> modelVersion,
                          QXNativeStatusEnums statusCode);

    /// Reads what encodeWithCoder() wrote. A missing "statusCode" is a 0, any other missing key leaves its field absent.
    /// Throws PlatformException when a value is of another kind, or the version beyond 32 bits.
    explicit QXNativeModelMetaData(const kovalin::platform::KeyedUnarchiver& coder);

    /// A shared record of the same fields; never null.
    [[nodiscard]] static std::shared_ptr<const QXNativeModelMetaData>
    ModelMetaDataWithModelUrl(const std::optional<QString>& modelUrl, std::optional<std::int32_t> modelVersion,
                              QXNativeStatusEnums statusCode);

    /// Where the model is: the remote location before it is downloaded, the path of a local file in all that is stored.
    [[nodiscard]] const std::optional<QString>& modelUrl() const { return _modelUrl; }
    [[nodiscard]] std::optional<std::int32_t> modelVersion() const { return _modelVersion; }
    /// How the operation that made this record ended.
    [[nodiscard]] QXNativeStatusEnums statusCode() const { return _statusCode; }

    /// One line for people, with the object's address.
    [[nodiscard]] QString description() const;

    /// Writes "modelUrl", "modelVersion" and "statusCode", in this order; absent fields write nothing.
    void encodeWithCoder(kovalin::platform::KeyedArchiver& coder) const;

private:
    std::optional<QString> _modelUrl;
    std::optional<std::int32_t> _modelVersion;
    QXNativeStatusEnums _statusCode;
};

using QXNativeModelMetaDataPtr = std::shared_ptr<const QXNativeModelMetaData>;
