#include "platform/store/PINCache.h"

#include "platform/store/StoreTesting.h"

#include <gtest/gtest.h>

namespace kovalin::platform {
namespace {

/// A host's cache that doesn't know costs.
class CacheWithoutCosts final : public PINCache {
public:
    using PINCache::setObject;

    PINDiskCache& diskCache() override { return _level; }
    PINMemoryCache& memoryCache() override { return _level; }
    QImage objectForKey(const QString&) override { return _image; }
    void setObject(const EncodedImage& object, const QString&) override { _image = object.image; }
    void removeAllObjects() override { _image = {}; }

private:
    class Level final : public PINDiskCache, public PINMemoryCache {
    public:
        void setByteLimit(qint64) override {}
        void setCostLimit(qsizetype) override {}
    };

    Level _level;
    QImage _image;
};

TEST(PINCache, PassesOnWithoutTheCostWhereACacheKnowsNone)
{
    CacheWithoutCosts implementation;
    PINCache& cache = implementation;
    const EncodedImage stored = test::picture(1);
    cache.setObject(stored, QStringLiteral("key"), 7);
    EXPECT_EQ(cache.objectForKey(QStringLiteral("key")), stored.image);
}

} // namespace
} // namespace kovalin::platform
