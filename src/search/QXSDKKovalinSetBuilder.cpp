#include "search/QXSDKKovalinSetBuilder.h"

#include "search/ArrangedStickers.h"
#include "search/StickerDisplayOrder.h"

#include <memory>

struct QXSDKKovalinSetBuilder::Arranged {
    std::shared_ptr<ArrangedStickers> stickers;
    StickerDisplayOrder::Outcome outcome;

    [[nodiscard]] QXSDKKovalinSet run(quint32 start, quint32 end) const
    {
        return {stickers, start, end - start, outcome.hasSolovalin};
    }
    [[nodiscard]] quint32 count() const { return static_cast<quint32>(stickers->order.size()); }
};

void QXSDKKovalinSetBuilder::addKovalin(const KovalinStickerPtr& sticker, bool isStarTag)
{
    _stickers.append(sticker);
    _isStarTag.push_back(isStarTag);
}

QXSDKKovalinSetBuilder::Arranged QXSDKKovalinSetBuilder::arranged() const
{
    auto stickers = std::make_shared<ArrangedStickers>();
    stickers->table.append(_stickers);
    stickers->table.finish();
    std::vector<StickerArrival> arrivals;
    arrivals.reserve(_isStarTag.size());
    for (quint32 number = 0; number < stickers->table.count(); ++number) {
        arrivals.push_back({number & 0x7FFFFFFFU, _isStarTag[number] ? 1U : 0U});
    }
    const auto outcome = StickerDisplayOrder(stickers->table).arrange(arrivals, stickers->order);
    return {std::move(stickers), outcome};
}

KovalinStickerList QXSDKKovalinSetBuilder::starTagged() const
{
    const Arranged all = arranged();
    return all.run(0, all.outcome.starCount).array();
}

KovalinStickerList QXSDKKovalinSetBuilder::nonStarTagged() const
{
    const Arranged all = arranged();
    return all.run(all.outcome.starCount, all.count()).array();
}

bool QXSDKKovalinSetBuilder::hasSolovalin() const
{
    return arranged().outcome.hasSolovalin;
}

QXSDKKovalinSet QXSDKKovalinSetBuilder::build() const
{
    const Arranged all = arranged();
    return all.run(0, all.count());
}
