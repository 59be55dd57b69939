#pragma once

#include <QtCore/QList>

#include <vector>

namespace djinni {

/// A list of values, in the same order on both sides.
template <class Conversion>
struct ListConversion {
    using Cpp = std::vector<typename Conversion::Cpp>;
    using Platform = QList<typename Conversion::Platform>;

    [[nodiscard]] static Cpp toCpp(const Platform& list)
    {
        Cpp converted;
        converted.reserve(static_cast<typename Cpp::size_type>(list.size()));
        for (const auto& element : list) {
            converted.push_back(Conversion::toCpp(element));
        }
        return converted;
    }
    [[nodiscard]] static Platform fromCpp(const Cpp& list)
    {
        Platform converted;
        converted.reserve(static_cast<qsizetype>(list.size()));
        for (const auto& element : list) {
            converted.append(Conversion::fromCpp(element));
        }
        return converted;
    }
};

} // namespace djinni
