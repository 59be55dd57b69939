#pragma once

#include "support/ModelAnswers.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace vole::learned_search::test {

/// A model in which everything occurs, small enough to break it everywhere.
[[nodiscard]] inline ModelContent smallModel()
{
    ModelContent model;
    model.list({7, 9, 11});
    model.add("good", {{7, 0.5F}, {9, 0.25F}}, 0.2F, 1)
        .add("goodness", {{11, 0.5F}}, 0.9F, 0)
        .add("good|morning", {{9, 0.5F}, {11, 0.125F}}, 0.5F, 1)
        .add("morning", {{7, 0.0005F}}, 0.1F, -0.5F);
    return model;
}

/// Questions that reach all keys of the small model.
[[nodiscard]] inline std::vector<Question> smallModelQuestions()
{
    return {{"Good MORNING, goodness!"}, {"good", 1}, {"mor"}};
}

/// Where things stand in a model file that is as it should be, and what stands there.
class FilePlaces final {
public:
    explicit FilePlaces(Bytes& file)
        : _file(file)
    {
    }

    template <typename Value>
    [[nodiscard]] Value read(std::size_t place) const
    {
        Value value;
        std::memcpy(&value, &_file.at(place + sizeof value - 1) - (sizeof value - 1), sizeof value);
        return value;
    }

    template <typename Value>
    void write(std::size_t place, Value value)
    {
        std::memcpy(&_file.at(place + sizeof value - 1) - (sizeof value - 1), &value, sizeof value);
    }

    /// Where the offset at a place leads to.
    [[nodiscard]] std::size_t target(std::size_t place) const { return place + read<std::uint32_t>(place); }

    [[nodiscard]] std::size_t root() const { return target(0); }
    [[nodiscard]] std::size_t vtable(std::size_t table) const
    {
        return table - static_cast<std::size_t>(read<std::int32_t>(table));
    }
    [[nodiscard]] std::size_t field(std::size_t table, std::size_t slot) const
    {
        return table + read<std::uint16_t>(vtable(table) + 4 + 2 * slot);
    }

    // The vectors' lengths; the elements follow.
    [[nodiscard]] std::size_t rows() const { return target(field(root(), 0)); }
    [[nodiscard]] std::size_t comics() const { return target(field(root(), 1)); }
    [[nodiscard]] std::size_t keys() const { return target(field(root(), 2)); }
    /// The place of the offset of an element that is a table.
    [[nodiscard]] static std::size_t element(std::size_t vector, std::size_t index) { return vector + 4 + 4 * index; }
    [[nodiscard]] std::size_t comic(std::size_t index) const { return target(element(comics(), index)); }
    [[nodiscard]] std::size_t key(std::size_t index) const { return target(element(keys(), index)); }
    /// The length of a key's word; the characters follow.
    [[nodiscard]] std::size_t word(std::size_t index) const { return target(field(key(index), 0)); }

    /// All places that hold an offset to something behind them.
    [[nodiscard]] std::vector<std::size_t> offsets() const
    {
        std::vector<std::size_t> places{0, field(root(), 0), field(root(), 1), field(root(), 2)};
        for (std::uint32_t index = 0; index < read<std::uint32_t>(comics()); ++index) {
            places.push_back(element(comics(), index));
        }
        for (std::uint32_t index = 0; index < read<std::uint32_t>(keys()); ++index) {
            places.push_back(element(keys(), index));
            places.push_back(field(key(index), 0));
        }
        return places;
    }

    [[nodiscard]] std::vector<std::size_t> tables() const { return {root(), comic(0), comic(1), key(0), key(1)}; }

private:
    Bytes& _file;
};

} // namespace vole::learned_search::test
