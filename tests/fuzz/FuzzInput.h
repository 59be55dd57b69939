#pragma once

#include "support/ModelAnswers.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vole::learned_search::test {

/// What one input of the fuzzer stands for: a model file and what it is asked.
///
/// The first byte is `topN`, signed, where 127 stands for 1000. The second is how many bytes at the end are queries, one a
/// line. All in between is the model, so that a change of a query's length, or of what precedes the model's end, moves
/// nothing in the model.
struct FuzzInput {
    Bytes model;
    std::vector<Question> questions;

    [[nodiscard]] static FuzzInput fromBytes(const std::uint8_t* data, std::size_t size);
};

/// The input of a model and its queries, which have at most 255 bytes together.
[[nodiscard]] Bytes fuzzInputBytes(const Bytes& model, const std::vector<std::string>& queries, std::int8_t topN = 127);

} // namespace vole::learned_search::test
