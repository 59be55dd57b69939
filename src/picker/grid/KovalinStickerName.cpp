#include "picker/grid/KovalinStickerName.h"

#include <algorithm>

namespace {

/// Empty for a tag that only machines read.
QString readableTag(const QString& tag)
{
    if (tag.contains(u':') || tag.startsWith(u'#')) {
        return {};
    }
    return (tag.endsWith(u'*') ? tag.chopped(1) : tag).trimmed();
}

/// "good-morning" as "good morning"; empty for a mere number.
QString wordsOfIdentifier(QString identifier)
{
    if (std::ranges::none_of(identifier, [](QChar character) { return character.isLetter(); })) {
        return {};
    }
    return identifier.replace(u'-', u' ').replace(u'_', u' ').simplified();
}

} // namespace

QString kovalinStickerName(const KovalinSticker& sticker)
{
    const QStringList tags = sticker.tags().value_or(QStringList());
    for (const QString& tag : tags) {
        if (const QString name = readableTag(tag); !name.isEmpty()) {
            return name;
        }
    }
    const QString name = wordsOfIdentifier(sticker.templateId().value_or(QString()));
    return name.isEmpty() ? QStringLiteral("Kovalin") : name;
}
