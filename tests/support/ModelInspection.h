#pragma once

#include "support/ModelContent.h"

namespace vole::learned_search::test {

/// What a file is worth as a model.
struct ModelInspection {
    bool verifies = false;
    // Of a model that verifies:
    bool hasRows = false;
    bool hasComics = false;
    bool hasKeys = false;
    bool slicesLeaveRows = false; // some key points at rows that aren't there, so that asking for it stops the program

    [[nodiscard]] bool hasAllVectors() const { return hasRows && hasComics && hasKeys; }
    [[nodiscard]] bool canBePredictedWith() const { return verifies && hasAllVectors() && !slicesLeaveRows; }
};

/// Reads a file by the format's rules byte by byte, sharing no code with the library or with FlatBuffers.
[[nodiscard]] ModelInspection inspectModel(const Bytes& file);

} // namespace vole::learned_search::test
