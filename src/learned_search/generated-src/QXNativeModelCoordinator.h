#pragma once

#include "learned_search/generated-src/CacheHandle.h"

#include <QtCore/QString>

#include <memory>

class QXNativeModelCacheExecutor;
class QXNativeModelFileBuffer;
class QXNativeModelUpdateExecutor;

namespace vole::learned_search {
class ModelCoordinator;
}

/// A native coordinator: decides whether a model must be fetched, and opens the cached one. Any thread, but for the main one,
/// which the executors refuse; calls run on the caller's, and so do the executors. Native errors, and standard exceptions out
/// of an executor, are PlatformExceptions that carry the native text; a PlatformException and any other exception out of an
/// executor come through unchanged.
class QXNativeModelCoordinator final {
public:
    /// For the bridge alone.
    QXNativeModelCoordinator(const djinni::IdentityCache::Enrolment& enrolment,
                             const std::shared_ptr<vole::learned_search::ModelCoordinator>& cpp);

    /// A new coordinator at each call, which keeps both executors alive. Neither may be null. Never null.
    [[nodiscard]] static std::shared_ptr<QXNativeModelCoordinator>
    modelCoordinatorInstance(const std::shared_ptr<QXNativeModelCacheExecutor>& cacheExecutor,
                             const std::shared_ptr<QXNativeModelUpdateExecutor>& updateExecutor);

    /// The cached model, mapped. Never null: where no usable file is cached, the buffer is one whose state is invalid.
    [[nodiscard]] std::shared_ptr<QXNativeModelFileBuffer> getModel(const QString& modelName);

    /// Fetches the server's model if it offers one; whether a new model was fetched and recorded. Blocks through the whole
    /// request and download.
    [[nodiscard]] bool updateLocalModel(const QString& modelName);

private:
    friend struct djinni::WrapperConversion<QXNativeModelCoordinator, vole::learned_search::ModelCoordinator>;

    djinni::NativeHandle<vole::learned_search::ModelCoordinator> _handle;
};
