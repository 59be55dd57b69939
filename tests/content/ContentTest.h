#pragma once

#include "platform/foundation/CachesDirectory.h"
#include "search/KovalinPack.h"

#include <QtCore/QString>
#include <QtCore/QTemporaryDir>
#include <QtGui/QColor>

#include <memory>

namespace kovalin::test {

/// A caches directory of its own, for as long as this lives.
class OwnCachesDirectory final {
public:
    OwnCachesDirectory() { platform::setCachesDirectory(_folder.path()); }
    ~OwnCachesDirectory() { platform::setCachesDirectory({}); }
    OwnCachesDirectory(const OwnCachesDirectory&) = delete;
    OwnCachesDirectory& operator=(const OwnCachesDirectory&) = delete;

    [[nodiscard]] QString path(const QString& fileName) const { return _folder.filePath(fileName); }

private:
    QTemporaryDir _folder;
};

/// A visible pack with one sticker.
[[nodiscard]] inline KovalinPackPtr namedPack(const QString& packId, const QString& name, bool isVisible = true)
{
    auto sticker = std::make_shared<KovalinSticker>();
    sticker->setComicId(packId + QStringLiteral("-1"));
    sticker->setUrl(QStringLiteral("https://a.example/") + packId);
    auto pack = std::make_shared<KovalinPack>();
    pack->setPackId(packId);
    pack->setName(name);
    pack->setColor(QColor(Qt::red));
    pack->setVisible(isVisible);
    pack->setStickers({sticker});
    return pack;
}

} // namespace kovalin::test
