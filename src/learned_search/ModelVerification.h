#pragma once

namespace vole::learned_search {

class ModelFileBuffer;
struct SearchModel;

/// The model in a buffer, inside its mapping; null where the mapping failed or holds no model that can be read safely. The
/// buffer's state is valid. A model may have at most 1 000 000 tables: itself, its comics, and its keys. The order of its
/// keys, and what its keys point at, are not looked at.
[[nodiscard]] const SearchModel* verifiedModel(const ModelFileBuffer& buffer);

/// Whether a model has the three vectors without which it can't predict. One that lacks any passes verification.
[[nodiscard]] bool hasAllVectors(const SearchModel& model);

} // namespace vole::learned_search
