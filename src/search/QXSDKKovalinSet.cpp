#include "search/QXSDKKovalinSet.h"

#include "search/ArrangedStickers.h"

#include <numeric>
#include <utility>

namespace {

std::shared_ptr<const ArrangedStickers> arrangedAsListed(const KovalinStickerList& array)
{
    auto stickers = std::make_shared<ArrangedStickers>();
    stickers->table.append(array);
    stickers->table.finish();
    stickers->order.resize(stickers->table.count());
    std::iota(stickers->order.begin(), stickers->order.end(), 0U);
    return stickers;
}

} // namespace

QXSDKKovalinSet::QXSDKKovalinSet(const KovalinStickerList& array, bool hasSolovalin)
    : QXSDKKovalinSet(arrangedAsListed(array), 0, static_cast<quint32>(array.size()), hasSolovalin)
{
}

QXSDKKovalinSet::QXSDKKovalinSet(std::shared_ptr<const ArrangedStickers> stickers, quint32 start, quint32 count,
                                 bool hasSolovalin)
    : _stickers(std::move(stickers))
    , _start(start)
    , _count(count)
    , _hasSolovalin(hasSolovalin)
{
}

bool QXSDKKovalinSet::hasSolovalin() const
{
    return _hasSolovalin;
}

qsizetype QXSDKKovalinSet::count() const
{
    return _count;
}

KovalinStickerList QXSDKKovalinSet::array() const
{
    KovalinStickerList array;
    array.reserve(_count);
    for (quint32 place = _start; place < _start + _count; ++place) {
        array.append(_stickers->table.sticker(_stickers->order[place]));
    }
    return array;
}
