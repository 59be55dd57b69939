#include "kits/core/picoproto.h"

#include <protozero/pbf_writer.hpp>

struct picoproto_ctx_s {
    std::string bytes;
    protozero::pbf_writer writer{bytes};
};

picoproto_ctx_s* picoproto_new([[maybe_unused]] const char* name)
{
    return new picoproto_ctx_s;
}

void picoproto_free(picoproto_ctx_s* message)
{
    delete message;
}

const std::string& picoproto_bytes(const picoproto_ctx_s* message)
{
    return message->bytes;
}

void picoproto_write_varint_field(picoproto_ctx_s* message, std::uint32_t field, std::uint64_t value)
{
    message->writer.add_uint64(field, value);
}

void picoproto_write_string_field(picoproto_ctx_s* message, std::uint32_t field, const char* value)
{
    if (value != nullptr) {
        message->writer.add_string(field, value);
    }
}

void picoproto_write_embedded_message_field(picoproto_ctx_s* message, std::uint32_t field, picoproto_ctx_s* inner,
                                            int takes)
{
    message->writer.add_message(field, inner->bytes);
    if (takes != 0) {
        picoproto_free(inner);
    }
}

void picoproto_write_repeated_embedded_message_field(picoproto_ctx_s* message, std::uint32_t field,
                                                     picoproto_ctx_s* const* inners, std::size_t count, int takes)
{
    for (std::size_t i = 0; i < count; ++i) {
        picoproto_write_embedded_message_field(message, field, inners[i], takes);
    }
}
