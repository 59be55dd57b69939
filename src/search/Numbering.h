#pragma once

#include <QtCore/QStringView>
#include <QtCore/QtGlobal>

#include <cstddef>
#include <vector>

/// Finds the number that a thing was given before by the hash of the thing. Knows the numbers only; what they stand for, and
/// when two things are equal, is the caller's.
///
/// A hash table with nothing in it but eight bytes an entry, for building indices: there a lookup waits for memory, and one of
/// QHash waits several times as often. One thread at a time.
class NumberTable final {
public:
    /// The number of a thing with this hash for which `isNumber(number)` holds, or `next`, which it has from then on.
    template <class IsNumber>
    quint32 numberOf(std::size_t hash, quint32 next, IsNumber&& isNumber)
    {
        if (_used * 2 >= _slots.size()) {
            grow();
        }
        // Folded, so that a hash which varies in its upper half only is as good.
        const auto shortHash = static_cast<quint32>(hash ^ (hash >> (4 * sizeof(hash))));
        for (std::size_t place = shortHash & mask();; place = (place + 1) & mask()) {
            Slot& slot = _slots[place];
            if (slot.numberPlusOne == 0) {
                slot = {shortHash, next + 1};
                ++_used;
                return next;
            }
            if (slot.hash == shortHash && isNumber(slot.numberPlusOne - 1)) {
                return slot.numberPlusOne - 1;
            }
        }
    }

    /// Makes room for this many things at once.
    void reserve(std::size_t count);

private:
    struct Slot {
        quint32 hash = 0;
        quint32 numberPlusOne = 0; // 0 in an empty slot
    };

    [[nodiscard]] std::size_t mask() const { return _slots.size() - 1; }
    void grow();
    void resize(std::size_t size);

    std::vector<Slot> _slots; // a power of two of them, or none
    std::size_t _used = 0;
};

/// Gives different texts the numbers 0, 1, 2, … in the order in which they are met first, and keeps each once. One thread at a
/// time.
class TextNumbering final {
public:
    quint32 numberOf(QStringView text);

    [[nodiscard]] quint32 count() const { return static_cast<quint32>(_ends.size()); }

    /// Valid until the next call of numberOf().
    [[nodiscard]] QStringView text(quint32 number) const;

    /// The length of all texts together, in UTF-16 units.
    [[nodiscard]] std::size_t totalLength() const { return _text.size(); }

private:
    NumberTable _table;
    std::vector<char16_t> _text;
    std::vector<quint32> _ends; // by number: into _text
};
