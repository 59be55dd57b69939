#pragma once

#include "support/ModelAnswers.h"

#include <gtest/gtest.h>

namespace vole::learned_search::test {

/// Whether a file, good or bad, is treated as it should be, in memory: what it is told to be, logged as and answers is right.
inline testing::AssertionResult isTreatedRightly(const Bytes& file, const std::vector<Question>& questions)
{
    const auto fault = firstFault(bufferOf(file), inspectModel(file), questions);
    return fault ? testing::AssertionFailure() << *fault : testing::AssertionSuccess();
}

/// The same for a real file.
inline testing::AssertionResult isTreatedRightlyOnDisk(const Bytes& file, const std::vector<Question>& questions)
{
    const TemporaryFile onDisk(file);
    const auto fault =
        firstFault(ModelFileBuffer::modelFileBufferInstanceWithPath(onDisk.path()), inspectModel(file), questions);
    return fault ? testing::AssertionFailure() << "on disk: " << *fault : testing::AssertionSuccess();
}

} // namespace vole::learned_search::test
