#include "kovalin-backend/FirstWord.h"

#include <algorithm>
#include <string_view>

namespace kovalin::backend {

std::pair<QByteArray, QByteArray> firstWord(const QByteArray& text)
{
    constexpr std::string_view spaces = " \t\n\v\f\r";
    const QByteArray trimmed = text.trimmed();
    const auto end = std::find_first_of(trimmed.begin(), trimmed.end(), spaces.begin(), spaces.end());
    const qsizetype length = end - trimmed.begin();
    return {trimmed.first(length), trimmed.sliced(length).trimmed()};
}

} // namespace kovalin::backend
