#pragma once

#include "search/KovalinPack.h"
#include "search/KovalinSticker.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace kovalin::test {

/// What a JSON text holds. A text that is no object fails the test that asked and gives an empty one.
[[nodiscard]] QJsonObject json(const char* text);

/// A one-person sticker whose URL follows from its comic id.
[[nodiscard]] KovalinStickerPtr solo(const QString& comicId, const QStringList& tags = {});

/// A two-person sticker whose URL follows from its comic id.
[[nodiscard]] KovalinStickerPtr pair(const QString& comicId, const QStringList& tags = {});

/// A visible pack unless told otherwise.
[[nodiscard]] KovalinPackPtr pack(const std::optional<QString>& title, const KovalinStickerList& stickers,
                                  bool visible = true, const std::optional<QString>& packId = std::nullopt);

/// `count` one-person stickers, all different from those of another prefix, all with the same tags.
[[nodiscard]] KovalinStickerList manySolo(const QString& prefix, int count, const QStringList& tags);

/// The comic ids of stickers, "-" for an absent one.
[[nodiscard]] QStringList comicIds(const KovalinStickerList& stickers);

/// The packs of examples/data/packs-emoji.json.
[[nodiscard]] KovalinPackList examplePacks();

} // namespace kovalin::test
