#include "support/ModelInspection.h"

#include <bit>
#include <cstring>
#include <optional>

namespace vole::learned_search::test {

namespace {

static_assert(std::endian::native == std::endian::little, "Model files are little-endian, and read here as they are.");

using Place = std::int64_t; // in the file, or outside of it

struct Vector {
    Place elements;
    std::int64_t count;
};

class Inspector final {
public:
    explicit Inspector(const Bytes& file)
        : _file(file)
    {
    }

    ModelInspection inspect()
    {
        ModelInspection found;
        if (!holds(0, 1) || _file.size() < sizeof(std::uint32_t)) {
            return found;
        }
        const Place root = read<std::uint32_t>(0);
        std::optional<Vector> rows;
        std::optional<Vector> comics;
        std::optional<Vector> keys;
        found.verifies = isTable(root) && readVector(field(root, 0), rowSize, rows) &&
                         readVector(field(root, 1), offsetSize, comics) && areComics(comics) &&
                         readVector(field(root, 2), offsetSize, keys) && areKeys(keys);
        if (found.verifies) {
            found.hasRows = rows.has_value();
            found.hasComics = comics.has_value();
            found.hasKeys = keys.has_value();
            found.slicesLeaveRows = keys && slicesLeave(*keys, rows ? rows->count : 0);
        }
        return found;
    }

private:
    static constexpr std::int64_t rowSize = 8;
    static constexpr std::int64_t offsetSize = 4;
    static constexpr std::int64_t scalarSize = 4;
    static constexpr std::int64_t mostTables = 1'000'000;
    static constexpr std::int64_t mostBytes = (std::int64_t{1} << 31) - 1;

    /// Whether a piece lies inside of the file. The whole file is no piece of itself: the offset to the root is left.
    [[nodiscard]] bool holds(Place place, std::int64_t size) const
    {
        const auto all = static_cast<std::int64_t>(_file.size());
        return place >= 0 && size < all && place <= all - size;
    }

    template <typename Value>
    [[nodiscard]] Value read(Place place) const
    {
        Value value;
        std::memcpy(&value, _file.data() + place, sizeof value);
        return value;
    }

    /// Counts against the limit, too.
    bool isTable(Place table)
    {
        if (!holds(table, offsetSize) || ++_tables > mostTables) {
            return false;
        }
        const Place vtable = vtableOf(table);
        if (!holds(vtable, sizeof(std::uint16_t))) {
            return false;
        }
        const auto size = read<std::uint16_t>(vtable);
        return size % 2 == 0 && holds(vtable, size);
    }

    [[nodiscard]] Place vtableOf(Place table) const { return table - read<std::int32_t>(table); }

    /// nullopt where the field is absent.
    [[nodiscard]] std::optional<Place> field(Place table, int slot) const
    {
        const Place vtable = vtableOf(table);
        const std::int64_t entry = 4 + 2 * slot;
        const std::int64_t offset = entry < read<std::uint16_t>(vtable) ? read<std::uint16_t>(vtable + entry) : 0;
        return offset == 0 ? std::nullopt : std::optional(table + offset);
    }

    /// False where there is a field that leads to no vector inside of the file.
    bool readVector(std::optional<Place> at, std::int64_t elementSize, std::optional<Vector>& vector) const
    {
        if (!at) {
            return true;
        }
        if (!holds(*at, offsetSize)) {
            return false;
        }
        const std::int64_t offset = read<std::uint32_t>(*at);
        const Place place = *at + offset;
        if (offset == 0 || offset > mostBytes || !holds(place, offsetSize)) {
            return false;
        }
        vector = Vector{place + offsetSize, read<std::uint32_t>(place)};
        return vector->count < mostBytes / elementSize && holds(place, offsetSize + vector->count * elementSize);
    }

    [[nodiscard]] bool isScalar(std::optional<Place> at) const { return !at || holds(*at, scalarSize); }

    [[nodiscard]] bool isWord(std::optional<Place> at) const
    {
        std::optional<Vector> characters;
        if (!at || !readVector(at, 1, characters)) {
            return false;
        }
        const Place end = characters->elements + characters->count;
        return holds(end, 1) && read<std::uint8_t>(end) == 0;
    }

    [[nodiscard]] Place tableAt(const Vector& offsets, std::int64_t index) const
    {
        const Place element = offsets.elements + index * offsetSize;
        return element + read<std::uint32_t>(element);
    }

    bool areComics(const std::optional<Vector>& comics)
    {
        for (std::int64_t index = 0; comics && index < comics->count; ++index) {
            const Place comic = tableAt(*comics, index);
            if (!isTable(comic) || !isScalar(field(comic, 0)) || !isScalar(field(comic, 1))) {
                return false;
            }
        }
        return true;
    }

    bool areKeys(const std::optional<Vector>& keys)
    {
        for (std::int64_t index = 0; keys && index < keys->count; ++index) {
            const Place key = tableAt(*keys, index);
            if (!isTable(key) || !isWord(field(key, 0))) {
                return false;
            }
            for (const int scalar : {1, 2, 3, 4}) {
                if (!isScalar(field(key, scalar))) {
                    return false;
                }
            }
        }
        return true;
    }

    [[nodiscard]] bool slicesLeave(const Vector& keys, std::int64_t rows) const
    {
        const auto number = [this](std::optional<Place> at) {
            return at ? read<std::int32_t>(*at) : 0;
        };
        for (std::int64_t index = 0; index < keys.count; ++index) {
            const Place key = tableAt(keys, index);
            const std::int64_t start = number(field(key, 1));
            const std::int64_t count = number(field(key, 2));
            if (start >= 0 && count > 0 && start + count > rows) {
                return true;
            }
        }
        return false;
    }

    const Bytes& _file;
    std::int64_t _tables = 0;
};

} // namespace

ModelInspection inspectModel(const Bytes& file)
{
    return Inspector(file).inspect();
}

} // namespace vole::learned_search::test
