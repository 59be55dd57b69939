#include "FullPictureStore.h"

#include "MeasuredGrid.h"
#include "platform/store/PINCache.h"

namespace kovalin::bench {

namespace {

class NoLimits final : public platform::PINDiskCache, public platform::PINMemoryCache {
public:
    void setByteLimit(qint64 /*bytes*/) override {}
    void setCostLimit(qsizetype /*cost*/) override {}
};

class FullPictureStore final : public platform::PINCache {
public:
    [[nodiscard]] platform::PINDiskCache& diskCache() override { return _limits; }
    [[nodiscard]] platform::PINMemoryCache& memoryCache() override { return _limits; }
    [[nodiscard]] QImage objectForKey(const QString& key) override
    {
        return stickerPicture(QStringView(key).mid(key.lastIndexOf(u'/') + 1).toInt());
    }
    using PINCache::setObject;
    void setObject(const platform::EncodedImage& /*object*/, const QString& /*key*/) override {}
    void removeAllObjects() override {}

private:
    NoLimits _limits;
};

} // namespace

std::shared_ptr<QXSDKKovalinCache> newFullCache(QXSDKKovalinOperationalMetricsLogger& logger)
{
    static_cast<void>(stickerPicture(0)); // made before another thread asks
    return QXSDKKovalinCache::create(std::make_shared<FullPictureStore>(), logger, nullptr);
}

} // namespace kovalin::bench
