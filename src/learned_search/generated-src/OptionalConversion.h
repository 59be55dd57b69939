#pragma once

#include <optional>

namespace djinni {

/// A value that may be absent, on both sides std::nullopt then.
template <class Conversion>
struct OptionalConversion {
    using Cpp = std::optional<typename Conversion::Cpp>;
    using Platform = std::optional<typename Conversion::Platform>;

    [[nodiscard]] static Cpp toCpp(const Platform& value)
    {
        return value ? Cpp(Conversion::toCpp(*value)) : std::nullopt;
    }
    [[nodiscard]] static Platform fromCpp(const Cpp& value)
    {
        return value ? Platform(Conversion::fromCpp(*value)) : std::nullopt;
    }
};

/// A record that may be absent: null on the platform's side, std::nullopt on the native one.
template <class Conversion>
struct OptionalRecordConversion {
    using Cpp = std::optional<typename Conversion::Cpp>;
    using Platform = typename Conversion::Platform;

    [[nodiscard]] static Cpp toCpp(const Platform& record)
    {
        return record ? Cpp(Conversion::toCpp(record)) : std::nullopt;
    }
    [[nodiscard]] static Platform fromCpp(const Cpp& record) { return record ? Conversion::fromCpp(*record) : nullptr; }
};

} // namespace djinni
