#pragma once

#include "picker/content/ContentViewTest.h"
#include "search/QXSDKKovalinFusionSearchEngine.h"
#include "search/QXSDKKovalinLearnedSearchConfig.h"
#include "search/QXSDKKovalinLearnedSearchEngine.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"

namespace kovalin::test {

/// A content view over the library's own engines, without a model.
class FusionContentViewTest : public ContentViewTest {
protected:
    class WithoutModel final : public QXSDKKovalinLearnedSearchConfig {
    public:
        [[nodiscard]] bool isLearnedSearchEnabled() const override { return false; }
    };

    FusionContentViewTest()
    {
        auto popular = std::make_shared<KovalinPack>();
        popular->setPackId(QStringLiteral("popular"));
        popular->setName(QStringLiteral("Popular"));
        popular->setVisible(true);
        popular->setStickers(rows(1));
        auto happy = std::make_shared<KovalinPack>();
        happy->setPackId(QStringLiteral("happy"));
        happy->setName(QStringLiteral("Happy"));
        happy->setVisible(true);
        happy->setStickers({tagged(QStringLiteral("smile"), {QStringLiteral("happy*"), QStringLiteral("smile*")}),
                            tagged(QStringLiteral("hat"), {QStringLiteral("hat*")})});
        packs = {popular, happy};
        provider->setPacks(packs);
    }

    [[nodiscard]] KovalinStickerPtr tagged(const QString& comicId, const QStringList& tags) const
    {
        const auto made = sticker(comicId)->copy();
        made->setTags(tags);
        return made;
    }
    void show()
    {
        view = View::create({0, 0, width, height}, friends, std::make_shared<QXSDKKovalinStickerPickerConfig>(),
                            {fusion, fusion, provider, pictures.cache});
        view->setDelegate(delegate);
        root()->addSubview(view);
        view->showPopularKovalinsAndDefaultTagTiles();
        settle();
    }
    void openWithPacks()
    {
        show();
        EXPECT_TRUE(strip()->tagTiles()->isEmpty()) << "there is no index yet";
        fusion->contentDidLoadWithPacks(packs);
        ASSERT_TRUE(waitFor([this] { return !strip()->tagTiles()->isEmpty(); }));
    }

    std::shared_ptr<QXSDKKovalinFusionSearchEngine> fusion = std::make_shared<QXSDKKovalinFusionSearchEngine>(
        std::make_shared<QXSDKKovalinPrefixSearchEngine>(), std::make_shared<QXSDKKovalinLearnedSearchEngine>(),
        std::make_shared<WithoutModel>());
    KovalinPackList packs;
};

} // namespace kovalin::test
