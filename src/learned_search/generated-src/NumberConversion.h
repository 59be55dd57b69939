#pragma once

#include <cstdint>

namespace djinni {

/// A number or truth value, the same on both sides.
template <class Value>
struct ValueConversion {
    using Cpp = Value;
    using Platform = Value;

    [[nodiscard]] static Cpp toCpp(Platform value) { return value; }
    [[nodiscard]] static Platform fromCpp(Cpp value) { return value; }
};

using Int32Conversion = ValueConversion<std::int32_t>;
using Int64Conversion = ValueConversion<std::int64_t>;
using BoolConversion = ValueConversion<bool>;

} // namespace djinni
