#include "kovalin/JsonLine.h"

#include "shared/StandardStreams.h"

namespace kovalin::cli {

void writeJsonLine(const nlohmann::ordered_json& value)
{
    using nlohmann::ordered_json;
    writeOutput(value.dump(-1, ' ', false, ordered_json::error_handler_t::replace) + '\n');
    flushOutput();
}

} // namespace kovalin::cli
