#pragma once

#include "learned_search/generated-src/CacheHandle.h"

#include <QtCore/QString>

#include <cstdint>
#include <memory>
#include <optional>

namespace vole::learned_search {
class ModelFileBuffer;
}

/// A native model file buffer: a model file, mapped into memory for as long as somebody needs it. Any thread, but for
/// `dispose`; calls run on the caller's. Native errors are PlatformExceptions that carry the native text.
class QXNativeModelFileBuffer final {
public:
    /// For the bridge alone.
    QXNativeModelFileBuffer(const djinni::IdentityCache::Enrolment& enrolment,
                            const std::shared_ptr<vole::learned_search::ModelFileBuffer>& cpp);

    /// Maps the file. Never null: what goes wrong is told by `stateIsValid`, as it is where `path` is absent.
    [[nodiscard]] static std::shared_ptr<QXNativeModelFileBuffer>
    modelFileBufferInstanceWithPath(const std::optional<QString>& path);

    /// Where the mapping begins. Only to be asked while the state is valid.
    [[nodiscard]] std::int64_t getAddress() const;

    /// How many bytes are mapped. Only to be asked while the state is valid.
    [[nodiscard]] std::int64_t getSize() const;

    /// Whether the file was opened and its size known. Never changes.
    [[nodiscard]] bool stateIsValid() const;

    /// Ends the mapping at once, while the state goes on to be called valid. Only for an owner who knows that nobody reads
    /// it any more, no classifier above all. Whoever just lets go of the buffer needs no call.
    void dispose();

private:
    friend struct djinni::WrapperConversion<QXNativeModelFileBuffer, vole::learned_search::ModelFileBuffer>;

    djinni::NativeHandle<vole::learned_search::ModelFileBuffer> _handle;
};
