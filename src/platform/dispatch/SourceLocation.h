#pragma once

#include <version>

#if defined(__cpp_lib_source_location)
#include <source_location>
#else
#include <cstdint>
#endif

namespace kovalin::platform {

#if defined(__cpp_lib_source_location)

/// Where a call stands, as a default argument of the called function.
using SourceLocation = std::source_location;

#else

// Clang before 15 lacks what std::source_location is made of, though it compiles the rest of this library.
class SourceLocation final {
public:
    static constexpr SourceLocation current(const char* function = __builtin_FUNCTION(),
                                            std::uint_least32_t line = __builtin_LINE()) noexcept
    {
        return {function, line};
    }

    [[nodiscard]] constexpr const char* function_name() const noexcept { return _function; }
    [[nodiscard]] constexpr std::uint_least32_t line() const noexcept { return _line; }

private:
    constexpr SourceLocation(const char* function, std::uint_least32_t line) noexcept
        : _function(function)
        , _line(line)
    {
    }

    const char* _function;
    std::uint_least32_t _line;
};

#endif

} // namespace kovalin::platform
