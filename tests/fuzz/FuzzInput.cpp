#include "fuzz/FuzzInput.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace vole::learned_search::test {

namespace {

constexpr std::size_t headerSize = 2;
constexpr auto usualTopNByte = std::numeric_limits<std::int8_t>::max();
constexpr std::int32_t usualTopN = 1000;

} // namespace

FuzzInput FuzzInput::fromBytes(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input;
    if (size < headerSize) {
        return input;
    }
    const auto topNByte = static_cast<std::int8_t>(data[0]);
    const std::int32_t topN = topNByte == usualTopNByte ? usualTopN : topNByte;
    const std::size_t queriesSize = std::min<std::size_t>(data[1], size - headerSize);
    const std::uint8_t* const end = data + size;
    input.model.assign(data + headerSize, end - queriesSize);
    for (const std::uint8_t* query = end - queriesSize; query != end;) {
        const std::uint8_t* const queryEnd = std::find(query, end, '\n');
        input.questions.push_back({std::string(query, queryEnd), topN});
        query = queryEnd == end ? end : queryEnd + 1;
    }
    return input;
}

Bytes fuzzInputBytes(const Bytes& model, const std::vector<std::string>& queries, std::int8_t topN)
{
    std::string lines;
    for (const std::string& query : queries) {
        lines.append(lines.empty() ? "" : "\n").append(query);
    }
    if (lines.size() > std::numeric_limits<std::uint8_t>::max()) {
        throw std::length_error("the queries are too long for one input");
    }
    Bytes bytes;
    bytes.reserve(headerSize + model.size() + lines.size());
    bytes.push_back(static_cast<std::uint8_t>(topN));
    bytes.push_back(static_cast<std::uint8_t>(lines.size()));
    bytes.insert(bytes.end(), model.begin(), model.end());
    bytes.insert(bytes.end(), lines.begin(), lines.end());
    return bytes;
}

} // namespace vole::learned_search::test
