#pragma once

#include <cstdint>

namespace vole::learned_search {

class ModelFileBuffer;
struct SearchModel;

/// The most tables that a model may have: itself, its comics, and its keys.
inline constexpr std::uint32_t kMostTables = 1'000'000;

/// The model in a buffer, inside its mapping; null where the mapping failed or holds no model that can be read safely. The
/// buffer's state is valid. The order of the model's keys, and what its keys point at, are not looked at.
[[nodiscard]] const SearchModel* verifiedModel(const ModelFileBuffer& buffer);

/// Whether a model has the three vectors without which it can't predict. One that lacks any passes verification.
[[nodiscard]] bool hasAllVectors(const SearchModel& model);

} // namespace vole::learned_search
