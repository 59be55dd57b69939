#pragma once

#include <cstdint>
#include <string>

namespace kovalin::cli {

struct ModelSize {
    std::uint64_t keys;
    std::uint64_t comics;
    std::uint64_t rows;
    std::uint64_t keyBytes; // the length of all keys together
};

/// What keeps a model of this size from being written or read, in words; empty when nothing does.
[[nodiscard]] std::string limitFault(const ModelSize& size);

/// At least as many bytes as the model's file has, and hardly a fifth more.
[[nodiscard]] std::uint64_t mostFileBytes(const ModelSize& size);

} // namespace kovalin::cli
