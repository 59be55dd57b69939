#pragma once

#include <QtCore/QString>

#include <string>

namespace djinni {

/// Text: UTF-8 of the string's length on the native side, zeros included. A QString can't be absent; text that may be is
/// OptionalConversion<StringConversion>. What isn't well formed is replaced: a surrogate without its partner by "?", bytes
/// that are no UTF-8 by U+FFFD.
struct StringConversion {
    using Cpp = std::string;
    using Platform = QString;

    [[nodiscard]] static Cpp toCpp(const Platform& text);
    [[nodiscard]] static Platform fromCpp(const Cpp& text);
};

} // namespace djinni
