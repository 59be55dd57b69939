#include "search/Numbering.h"

#include <QtCore/QHashFunctions>

#include <algorithm>
#include <bit>
#include <utility>

void NumberTable::reserve(std::size_t count)
{
    if (count * 2 > _slots.size()) {
        resize(std::bit_ceil(count * 2));
    }
}

void NumberTable::grow()
{
    resize(std::max<std::size_t>(_slots.size() * 2, 64));
}

void NumberTable::resize(std::size_t size)
{
    const auto old = std::exchange(_slots, std::vector<Slot>(size));
    for (const Slot& slot : old) {
        if (slot.numberPlusOne != 0) {
            std::size_t place = slot.hash & mask();
            while (_slots[place].numberPlusOne != 0) {
                place = (place + 1) & mask();
            }
            _slots[place] = slot;
        }
    }
}

quint32 TextNumbering::numberOf(QStringView text)
{
    const quint32 next = count();
    const quint32 number = _table.numberOf(qHash(text, QHashSeed::globalSeed()), next,
                                           [&](quint32 known) { return this->text(known) == text; });
    if (number == next) {
        _text.insert(_text.end(), text.utf16(), text.utf16() + text.size());
        _ends.push_back(static_cast<quint32>(_text.size()));
    }
    return number;
}

QStringView TextNumbering::text(quint32 number) const
{
    const quint32 start = number == 0 ? 0 : _ends[number - 1];
    return {_text.data() + start, static_cast<qsizetype>(_ends[number] - start)};
}
