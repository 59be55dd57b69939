#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Writes protobuf messages field by field. A context is one message that is being written; it may be used on one thread at a time.
//
// Ownership: a context belongs to whoever made it, until it is handed on or freed. Fields are written in the order of the calls.

struct picoproto_ctx_s;

/// A new message. `name` tells a reader of the code what it is, and isn't written.
[[nodiscard]] picoproto_ctx_s* picoproto_new(const char* name);

/// Ends a message that isn't handed on; null does nothing.
void picoproto_free(picoproto_ctx_s* message);

/// The bytes of the message so far.
[[nodiscard]] const std::string& picoproto_bytes(const picoproto_ctx_s* message);

void picoproto_write_varint_field(picoproto_ctx_s* message, std::uint32_t field, std::uint64_t value);

/// `value` is UTF-8 with a zero at the end. Null writes nothing: the field stays absent.
void picoproto_write_string_field(picoproto_ctx_s* message, std::uint32_t field, const char* value);

/// Writes a copy of what `inner` holds now. With `takes` other than 0, `inner` passes to this call, which frees it.
void picoproto_write_embedded_message_field(picoproto_ctx_s* message, std::uint32_t field, picoproto_ctx_s* inner,
                                            int takes);

/// The same for each of `count` messages, in their order. The array stays the caller's.
void picoproto_write_repeated_embedded_message_field(picoproto_ctx_s* message, std::uint32_t field,
                                                     picoproto_ctx_s* const* inners, std::size_t count, int takes);
