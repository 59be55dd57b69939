#include "search/StickerDisplayOrder.h"

#include <algorithm>
#include <iterator>

StickerDisplayOrder::StickerDisplayOrder(const StickerTable& table)
    : _table(table)
    , _segments(table.identityCount(), 0)
{
}

StickerDisplayOrder::Segment StickerDisplayOrder::segmentOf(quint32 identity) const
{
    const quint32 entry = _segments[identity];
    return entry >> 2U == _round ? static_cast<Segment>(entry & 3U) : Segment::None;
}

void StickerDisplayOrder::setSegment(quint32 identity, Segment segment)
{
    _segments[identity] = _round << 2U | static_cast<quint32>(segment);
}

StickerDisplayOrder::Outcome StickerDisplayOrder::arrange(std::span<const StickerArrival> arrivals,
                                                          std::vector<quint32>& order)
{
    constexpr quint32 lastRound = 0x3FFFFFFF;
    if (_round == lastRound) {
        std::fill(_segments.begin(), _segments.end(), 0);
        _round = 0;
    }
    ++_round;
    for (auto* list : {&_starFriendvalins, &_starSolovalins, &_plainFriendvalins, &_plainSolovalins}) {
        list->clear();
    }

    bool hasSolovalin = false;
    for (const StickerArrival arrival : arrivals) {
        const quint32 identity = _table.identity(arrival.sticker);
        const Segment segment = segmentOf(identity);
        if (segment == Segment::Star) {
            continue;
        }
        const bool isFriendvalin = _table.isFriendvalin(arrival.sticker);
        hasSolovalin = hasSolovalin || !isFriendvalin;
        if (arrival.isStarTag) {
            (isFriendvalin ? _starFriendvalins : _starSolovalins).push_back(arrival.sticker);
            setSegment(identity, Segment::Star);
        } else if (segment == Segment::None) {
            (isFriendvalin ? _plainFriendvalins : _plainSolovalins).push_back(arrival.sticker);
            setSegment(identity, Segment::Plain);
        }
    }

    const auto start = order.size();
    order.insert(order.end(), _starFriendvalins.crbegin(), _starFriendvalins.crend());
    order.insert(order.end(), _starSolovalins.cbegin(), _starSolovalins.cend());
    const auto starCount = static_cast<quint32>(order.size() - start);
    // What a star moved up later is left out here.
    const auto isStillPlain = [this](quint32 sticker) {
        return segmentOf(_table.identity(sticker)) == Segment::Plain;
    };
    std::copy_if(_plainFriendvalins.crbegin(), _plainFriendvalins.crend(), std::back_inserter(order), isStillPlain);
    std::copy_if(_plainSolovalins.cbegin(), _plainSolovalins.cend(), std::back_inserter(order), isStillPlain);
    return {starCount, hasSolovalin};
}
