#pragma once

#include "utils/AssertionFailure.h"

/// An assertion that stays on in release builds: a clean stop beats reading foreign memory.
#define KOVALIN_HARD_ASSERT(condition)                                                                                 \
    ((condition) ? void() : ::vole::detail::failAssertion(#condition, __FILE__, __LINE__, __func__))
