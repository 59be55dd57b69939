#include "SampleRecords.h"

namespace kovalin::test {

SampleNode::SampleNode() = default;
SampleNode::~SampleNode() = default;

SampleNode::SampleNode(const platform::KeyedUnarchiver& coder)
    : child(coder.decodeObject<SampleNode>(QStringLiteral("child")))
    , children(coder.decodeObjects<SampleNode>(QStringLiteral("children")))
{
}

void SampleNode::encodeWithCoder(platform::KeyedArchiver& coder) const
{
    coder.encodeObject(QStringLiteral("child"), child);
    coder.encodeObject(QStringLiteral("children"), children);
}

SampleSticker::SampleSticker(const QString& stickerUrl, const std::optional<QString>& stickerText)
    : url(stickerUrl)
    , text(stickerText)
{
}

SampleSticker::SampleSticker(const platform::KeyedUnarchiver& coder)
    : url(coder.decodeString(QStringLiteral("url")).value_or(QString()))
    , text(coder.decodeString(QStringLiteral("text")))
{
}

void SampleSticker::encodeWithCoder(platform::KeyedArchiver& coder) const
{
    coder.encodeObject(QStringLiteral("url"), url);
    coder.encodeObject(QStringLiteral("text"), text);
}

SamplePack::SamplePack() = default;

SamplePack::SamplePack(const platform::KeyedUnarchiver& coder)
    : name(coder.decodeString(QStringLiteral("name")))
    , tags(coder.decodeStringList(QStringLiteral("tags")))
    , color(coder.decodeColor(QStringLiteral("color")))
    , isNew(coder.decodeBool(QStringLiteral("isNew")))
    , size(coder.decodeInteger(QStringLiteral("size")).value_or(0))
    , weight(coder.decodeDouble(QStringLiteral("weight")).value_or(0))
    , cover(coder.decodeObject<const SampleSticker>(QStringLiteral("cover")))
    , stickers(coder.decodeObjects<const SampleSticker>(QStringLiteral("stickers")))
{
}

void SamplePack::encodeWithCoder(platform::KeyedArchiver& coder) const
{
    coder.encodeObject(QStringLiteral("name"), name);
    coder.encodeObject(QStringLiteral("tags"), tags);
    coder.encodeObject(QStringLiteral("color"), color);
    coder.encodeBool(QStringLiteral("isNew"), isNew);
    coder.encodeInteger(QStringLiteral("size"), size);
    coder.encodeDouble(QStringLiteral("weight"), weight);
    coder.encodeObject(QStringLiteral("cover"), cover);
    coder.encodeObject(QStringLiteral("stickers"), stickers);
}

SamplePack samplePack()
{
    SamplePack pack;
    pack.name = QStringLiteral("Grüße \U0001F600");
    pack.tags = QStringList{QStringLiteral("hi"), QString(), QStringLiteral("привет")};
    pack.color = QColor::fromRgba64(0x0001, 0x8000, 0xFFFF, 0x7FFF);
    pack.isNew = true;
    pack.size = -1234567890123;
    pack.weight = 0.1;
    pack.cover = std::make_shared<SampleSticker>(QStringLiteral("https://example.com/1.png"), std::nullopt);
    pack.stickers = QList<std::shared_ptr<const SampleSticker>>{
        pack.cover, std::make_shared<SampleSticker>(QStringLiteral("u"), QStringLiteral(""))};
    return pack;
}

} // namespace kovalin::test
