#pragma once

#include "kovalin_learned_search/Export.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace vole::learned_search {

/// A model file, mapped into memory read-only for as long as the buffer lives. Any thread, but for `dispose`.
///
/// Nothing of the file is read in advance: pages come in as they are touched, stay clean, and can be evicted. Whoever
/// replaces a model writes a new file: a mapped file that shrinks takes the program with it when what is gone is read.
class KOVALIN_LEARNED_SEARCH_EXPORT ModelFileBuffer {
public:
    /// Ends the mapping.
    virtual ~ModelFileBuffer();

    /// Maps the file. Never null: what goes wrong is told by `stateIsValid` and, but for an absent path, by a line in the
    /// log.
    [[nodiscard]] static std::shared_ptr<ModelFileBuffer>
    modelFileBufferInstanceWithPath(const std::optional<std::string>& path);

    /// Where the mapping begins. Only to be asked while the state is valid. A file that the system doesn't map, an empty one
    /// for instance, leaves a valid state and the address -1.
    [[nodiscard]] virtual std::int64_t getAddress() const = 0;

    /// How many bytes are mapped. Only to be asked while the state is valid.
    [[nodiscard]] virtual std::int64_t getSize() const = 0;

    /// Whether the file was opened and its size known. Never changes.
    [[nodiscard]] virtual bool stateIsValid() const = 0;

    /// Ends the mapping at once, while the state goes on to be called valid. Only for an owner who knows that nobody reads
    /// the mapping any more, on this thread or another; the destructor will ask to end it once more. Whoever just lets go of
    /// the buffer needs no call.
    virtual void dispose() = 0;
};

} // namespace vole::learned_search
