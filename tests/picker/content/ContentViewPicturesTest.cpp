#include "content/ContentTest.h"
#include "content/QXSDKKovalinFriendState.h"
#include "content/QXSDKKovalinPacksArchive.h"
#include "picker/PictureLook.h"
#include "picker/config/QXSDKKovalinLanguage.h"
#include "picker/content/QXSDKKovalinStickerPickerContentView.h"
#include "picker/content/ScriptedSearchEngine.h"
#include "picker/grid/LoopbackPictures.h"
#include "picker/tags/TagViews.h"
#include "support/PictureTest.h"
#include "support/SampleStickers.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <QtTest/QTest>

#include <algorithm>
#include <array>
#include <vector>

using namespace kovalin::test;
using kovalin::platform::CollectionView;

namespace {

const QString scene = QStringLiteral("content");

/// Points: a narrow column, phones, a tablet.
constexpr std::array<int, 4> widths{200, 320, 412, 1024};

struct ContentPicture {
    int width; // points
    PictureLook look = {};

    [[nodiscard]] QString name() const { return QStringLiteral("%1_%2").arg(width).arg(look.name()); }
    [[nodiscard]] bool isRightToLeft() const { return look.direction == Qt::RightToLeft; }
};

void PrintTo(const ContentPicture& picture, std::ostream* stream)
{
    *stream << picture.name().toStdString();
}

/// The content view in each of its states.
class ContentViewPicturesTest : protected WithLoopbackPictures,
                                public PictureTest,
                                public testing::WithParamInterface<ContentPicture> {
protected:
    using ContentView = QXSDKKovalinStickerPickerContentView;
    using Cell = QXSDKKovalinStickerCollectionViewCell;

    static constexpr int height = 300; // points
    static constexpr QPointF inField{100, 20};

    void SetUp() override
    {
        PictureTest::SetUp();
        if (!IsSkipped() && !HasFatalFailure()) {
            open();
        }
    }
    void TearDown() override
    {
        QXSDKKovalinSetPreferredLanguages({});
        for (const auto& shown : root()->subviews()) {
            shown->removeFromSuperview();
        }
    }

    [[nodiscard]] KovalinStickerPtr sticker(int number)
    {
        const QString path = QStringLiteral("/%1").arg(number);
        pictures.server.script(path.toLatin1(), ScriptedAnswer::ok(encoded(sampleSticker(number))));
        auto made = std::make_shared<KovalinSticker>();
        made->setComicId(QString::number(number));
        made->setUrl(pictures.server.url(path).toString());
        return made;
    }
    [[nodiscard]] KovalinStickerList stickers(int first, int count)
    {
        KovalinStickerList made;
        for (int number = first; number < first + count; ++number) {
            made.append(sticker(number));
        }
        return made;
    }
    [[nodiscard]] static QStringList packNames()
    {
        if (GetParam().isRightToLeft()) {
            return {QStringLiteral("\u0645\u0631\u062d\u0628\u0627"),
                    QStringLiteral("\u062d\u0628"),
                    QStringLiteral("\u0635\u0628\u0627\u062d \u0627\u0644\u062e\u064a\u0631"),
                    QStringLiteral("\u0634\u0643\u0631\u0627"),
                    QStringLiteral("\u0646\u0639\u0645"),
                    QStringLiteral("\u0644\u0627"),
                    QStringLiteral("\u0639\u064a\u062f \u0633\u0639\u064a\u062f")};
        }
        return {QStringLiteral("Hello"),   QStringLiteral("Love"), QStringLiteral("Good morning"),
                QStringLiteral("Thanks"),  QStringLiteral("Yes"),  QStringLiteral("No"),
                QStringLiteral("Birthday")};
    }
    void open()
    {
        KovalinPackList packs;
        for (const QString& name : packNames()) {
            const bool isFirst = packs.isEmpty();
            auto pack = std::make_shared<KovalinPack>();
            pack->setPackId(isFirst ? QStringLiteral("popular") : name);
            pack->setName(name);
            pack->setVisible(true);
            pack->setStickers(isFirst ? stickers(0, 30) : KovalinStickerList());
            packs.append(pack);
        }
        provider->setPacks(packs);
        const PictureLook& look = GetParam().look;
        QXSDKKovalinSetPreferredLanguages({GetParam().isRightToLeft() ? QStringLiteral("ar") : QStringLiteral("en")});
        const Surroundings surroundings{.size = {GetParam().width, height},
                                        .background = look.theme()->backgroundColor(),
                                        .direction = look.direction};
        show(surroundings, [&] {
            view = ContentView::create(QRectF(), friends, look.config(), {engine, engine, provider, pictures.cache});
            return view;
        });
        view->showPopularKovalinsAndDefaultTagTiles();
        static_cast<void>(settledPicture());
    }

    void type(const char* text)
    {
        tap(inField);
        for (const char* letter = text; *letter != '\0'; ++letter) {
            QTest::keyClick(&window(), *letter);
        }
    }
    void answer(const KovalinStickerList& found, const QStringList& tags)
    {
        ASSERT_FALSE(engine->searches.empty());
        engine->answer(engine->searches.size() - 1, found, tags);
    }

    /// All tiles on screen have their pictures.
    [[nodiscard]] static bool isLoaded(const CollectionView& grid)
    {
        return std::ranges::all_of(grid.indexPathsForVisibleItems(), [&](qsizetype item) {
            const auto cell = std::static_pointer_cast<Cell>(grid.cellForItemAtIndexPath(item));
            return cell && cell->isLoaded();
        });
    }
    [[nodiscard]] static std::shared_ptr<CollectionView> gridOf(const kovalin::platform::View& page)
    {
        return std::static_pointer_cast<CollectionView>(page.subviews().at(0));
    }
    [[nodiscard]] testing::AssertionResult looksAs(const char* state)
    {
        static_cast<void>(settledPicture()); // what moves has come to rest, and asks for its pictures
        const auto top = view->subviews().size() > 3 ? view->subviews().at(3) : view;
        if (!waitFor([&] { return isLoaded(*gridOf(*top)); })) {
            return testing::AssertionFailure() << "pictures stay away";
        }
        return PictureTest::looksAs(scene, GetParam().name() + u'_' + QString::fromLatin1(state));
    }

    OwnCachesDirectory caches;
    QXSDKKovalinStickerPickerSessionManager sessions;
    std::shared_ptr<QXSDKKovalinFriendState> friends = QXSDKKovalinFriendState::create(sessions);
    std::shared_ptr<QXSDKKovalinPacksArchive> archive = QXSDKKovalinPacksArchive::create();
    std::shared_ptr<QXSDKKovalinStickerDataProvider> provider = QXSDKKovalinStickerDataProvider::create(archive);
    std::shared_ptr<ScriptedSearchEngine> engine = std::make_shared<ScriptedSearchEngine>();
    std::shared_ptr<ContentView> view;
};

TEST_P(ContentViewPicturesTest, browsing)
{
    EXPECT_TRUE(looksAs("popular"));
}

TEST_P(ContentViewPicturesTest, typingTheFirstLetter)
{
    type("h");
    EXPECT_TRUE(looksAs("typing"));
}

TEST_P(ContentViewPicturesTest, results)
{
    type("happy");
    answer(stickers(40, 7), {QStringLiteral("happy"), QStringLiteral("happy birthday"), QStringLiteral("hat")});
    EXPECT_TRUE(looksAs("results"));
}

TEST_P(ContentViewPicturesTest, noResults)
{
    type("xyzzy");
    answer({}, {});
    EXPECT_TRUE(looksAs("no_results"));
}

TEST_P(ContentViewPicturesTest, resultsOfAHostsTermBeforeThePopularList)
{
    view->setSearchTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeBlend, QXSDKKovalinCategoryHostTerm);
    answer(stickers(40, 2), {QStringLiteral("happy")});
    EXPECT_TRUE(looksAs("blend"));
}

TEST_P(ContentViewPicturesTest, thePageOfATag)
{
    engine->stickersByTag = {{packNames().at(0), stickers(60, 11)}};
    const auto strip = std::static_pointer_cast<QXSDKKovalinTagSelectorView>(view->subviews().at(1));
    tap(middleOfPill(*strip, 0) + strip->frame().topLeft());
    ASSERT_EQ(view->subviews().size(), 4);
    EXPECT_TRUE(looksAs("tag_results"));
}

std::vector<ContentPicture> contentPictures()
{
    std::vector<ContentPicture> made;
    for (const int width : widths) {
        for (const PictureLook& look : PictureLook::all()) {
            made.push_back({width, look});
        }
    }
    return made;
}

INSTANTIATE_TEST_SUITE_P(ContentViews, ContentViewPicturesTest, testing::ValuesIn(contentPictures()),
                         [](const auto& given) { return given.param.name().toStdString(); });

} // namespace
