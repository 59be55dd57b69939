#include "platform/foundation/PackedStrings.h"

#include <QtCore/QHashFunctions>

#include <QtCore/QLatin1String>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace kovalin::platform {

// The block: the count of strings, a Place for each, and their text one after the other, two-byte text at even offsets. Where
// a text stands follows from the places before, which takes less than keeping it.
namespace {

using Count = std::uint32_t;

enum class Form : std::uint32_t { Absent, Latin1, Utf16 };

/// The form and the length of one text in 32 bits.
class Place final {
public:
    Place() = default;
    Place(Form form, qsizetype length)
        : _bits(static_cast<std::uint32_t>(length) << 2U | static_cast<std::uint32_t>(form))
    {
    }

    [[nodiscard]] Form form() const { return static_cast<Form>(_bits & 3U); }
    [[nodiscard]] std::size_t length() const { return _bits >> 2U; } // in characters

    [[nodiscard]] std::size_t byteLength() const
    {
        return form() == Form::Utf16 ? length() * sizeof(char16_t) : length();
    }
    [[nodiscard]] std::size_t startAtOrAfter(std::size_t offset) const
    {
        return form() == Form::Utf16 ? (offset + 1) & ~std::size_t{1} : offset;
    }

private:
    std::uint32_t _bits = 0;
};

bool isLatin1(QStringView text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() < 0x100; });
}

Place placeFor(const std::optional<QStringView>& text)
{
    if (!text) {
        return {Form::Absent, 0};
    }
    return {isLatin1(*text) ? Form::Latin1 : Form::Utf16, text->size()};
}

Count countIn(const std::byte* bytes)
{
    Count count = 0;
    if (bytes) {
        std::memcpy(&count, bytes, sizeof(count));
    }
    return count;
}

Place placeIn(const std::byte* bytes, std::size_t index)
{
    Place place;
    std::memcpy(&place, bytes + sizeof(Count) + index * sizeof(Place), sizeof(place));
    return place;
}

std::size_t textOffset(std::size_t count)
{
    return sizeof(Count) + count * sizeof(Place);
}

} // namespace

PackedStrings::PackedStrings(std::span<const std::optional<QStringView>> strings)
{
    std::size_t size = textOffset(strings.size());
    for (const auto& text : strings) {
        const Place place = placeFor(text);
        size = place.startAtOrAfter(size) + place.byteLength();
    }
    _bytes = std::make_unique_for_overwrite<std::byte[]>(size);

    const auto count = static_cast<Count>(strings.size());
    std::memcpy(_bytes.get(), &count, sizeof(count));
    std::size_t offset = textOffset(count);
    for (std::size_t index = 0; index < count; ++index) {
        const Place place = placeFor(strings[index]);
        std::memcpy(_bytes.get() + sizeof(Count) + index * sizeof(Place), &place, sizeof(place));
        if (place.length() == 0) {
            continue;
        }
        offset = place.startAtOrAfter(offset);
        const QStringView text = *strings[index];
        if (place.form() == Form::Latin1) {
            std::transform(text.cbegin(), text.cend(), _bytes.get() + offset,
                           [](QChar c) { return static_cast<std::byte>(c.unicode()); });
        } else {
            std::memcpy(_bytes.get() + offset, text.utf16(), place.byteLength());
        }
        offset += place.byteLength();
    }
}

PackedStrings::PackedStrings(std::initializer_list<std::optional<QStringView>> strings)
    : PackedStrings(std::span(strings.begin(), strings.size()))
{
}

PackedStrings::PackedStrings(const PackedStrings& other)
{
    if (other._bytes) {
        const std::size_t size = other.byteCount();
        _bytes = std::make_unique_for_overwrite<std::byte[]>(size);
        std::memcpy(_bytes.get(), other._bytes.get(), size);
    }
}

PackedStrings& PackedStrings::operator=(const PackedStrings& other)
{
    if (this != &other) {
        *this = PackedStrings(other);
    }
    return *this;
}

std::size_t PackedStrings::count() const
{
    return countIn(_bytes.get());
}

std::size_t PackedStrings::byteCount() const
{
    std::size_t size = textOffset(count());
    for (std::size_t index = 0; index < count(); ++index) {
        const Place place = placeIn(_bytes.get(), index);
        size = place.startAtOrAfter(size) + place.byteLength();
    }
    return size;
}

PackedStrings::Walk::Walk(const std::byte* bytes)
    : _bytes(bytes)
    , _offset(textOffset(countIn(bytes)))
{
}

std::optional<QAnyStringView> PackedStrings::Walk::next()
{
    const Place place = placeIn(_bytes, _index++);
    _offset = place.startAtOrAfter(_offset);
    const std::byte* text = _bytes + _offset;
    _offset += place.byteLength();
    const auto length = static_cast<qsizetype>(place.length());
    switch (place.form()) {
    case Form::Latin1:
        return QAnyStringView(QLatin1String(reinterpret_cast<const char*>(text), length));
    case Form::Utf16:
        return QAnyStringView(QStringView(reinterpret_cast<const char16_t*>(text), length));
    case Form::Absent:
        break;
    }
    return std::nullopt;
}

std::optional<QString> PackedStrings::at(std::size_t index) const
{
    const auto view = viewAt(index);
    return view ? std::optional(view->toString()) : std::nullopt;
}

std::optional<QAnyStringView> PackedStrings::viewAt(std::size_t index) const
{
    if (index >= count()) {
        return std::nullopt;
    }
    Walk walk(_bytes.get());
    for (; index > 0; --index) {
        (void)walk.next();
    }
    return walk.next();
}

bool PackedStrings::hasSameAt(std::size_t index, const PackedStrings& other) const
{
    const auto mine = viewAt(index);
    const auto theirs = other.viewAt(index);
    // Equal strings are held in one form, so their bytes are equal too.
    return mine && theirs && mine->size_bytes() == theirs->size_bytes() && mine->size() == theirs->size() &&
           std::memcmp(mine->data(), theirs->data(), static_cast<std::size_t>(mine->size_bytes())) == 0;
}

std::size_t PackedStrings::hashAt(std::size_t index) const
{
    static const std::size_t seed = QHashSeed::globalSeed(); // a host may set another one, and hashes are kept
    const auto view = viewAt(index);
    return view ? qHashBits(view->data(), static_cast<std::size_t>(view->size_bytes()), seed) : 0;
}

} // namespace kovalin::platform
