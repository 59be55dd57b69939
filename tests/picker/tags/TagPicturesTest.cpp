#include "content/QXSDKKovalinFriendState.h"
#include "picker/PictureLook.h"
#include "picker/config/QXSDKKovalinLanguage.h"
#include "picker/grid/LoopbackPictures.h"
#include "picker/tags/QXSDKKovalinTagResultsView.h"
#include "picker/tags/QXSDKKovalinTagTileFactory.h"
#include "picker/tags/TagViews.h"
#include "support/PictureTest.h"
#include "support/SampleStickers.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <algorithm>
#include <array>
#include <vector>

using namespace kovalin::test;
using kovalin::platform::CollectionView;
using kovalin::platform::View;

namespace {

const QString scene = QStringLiteral("tags");

/// Points: a narrow column, phones, a tablet.
constexpr std::array<int, 4> widths{200, 320, 412, 1024};

struct TagPicture {
    int width; // points
    PictureLook look = {};

    [[nodiscard]] QString name() const { return QStringLiteral("%1_%2").arg(width).arg(look.name()); }
    [[nodiscard]] bool isRightToLeft() const { return look.direction == Qt::RightToLeft; }
};

void PrintTo(const TagPicture& picture, std::ostream* stream)
{
    *stream << picture.name().toStdString();
}

/// The strip of pills and the page of a tag.
class TagPicturesTest : protected WithLoopbackPictures,
                        public PictureTest,
                        public testing::WithParamInterface<TagPicture> {
protected:
    using Cell = QXSDKKovalinStickerCollectionViewCell;

    static constexpr int stripHeight = 40; // points
    static constexpr int pageHeight = 180; // points: the header, a row and a part of the next

    void SetUp() override
    {
        PictureTest::SetUp();
        QXSDKKovalinSetPreferredLanguages({GetParam().isRightToLeft() ? QStringLiteral("ar") : QStringLiteral("en")});
    }
    void TearDown() override
    {
        QXSDKKovalinSetPreferredLanguages({});
        for (const auto& shown : root()->subviews()) {
            shown->removeFromSuperview();
        }
    }

    [[nodiscard]] Surroundings surroundings(int height) const
    {
        return {.size = {GetParam().width, height},
                .background = GetParam().look.theme()->backgroundColor(),
                .direction = GetParam().look.direction};
    }

    /// In the theme's own colours, or the picker's set where it has none.
    [[nodiscard]] static QXSDKTagTilePtr themed(const QString& text, int number)
    {
        const auto own = GetParam().look.theme()->searchPillColors().value_or(QList<QColor>());
        const QList<QColor> colors = own.isEmpty() ? QXSDKKovalinTagTileFactory::defaultColors() : own;
        return std::make_shared<const QXSDKTagTile>(text, colors.at(number % colors.size()));
    }
    [[nodiscard]] static QStringList words()
    {
        if (GetParam().isRightToLeft()) {
            return {QStringLiteral("\u0645\u0631\u062d\u0628\u0627"), QStringLiteral("\u062d\u0628"),
                    QStringLiteral("\u0635\u0628\u0627\u062d \u0627\u0644\u062e\u064a\u0631"),
                    QStringLiteral("\u0646\u0639\u0645"), QStringLiteral("\u0644\u0627")};
        }
        return {QStringLiteral("hello"), QStringLiteral("love"), QStringLiteral("good morning"), QStringLiteral("yes"),
                QStringLiteral("no")};
    }
    void showStrip(int rounds)
    {
        show(surroundings(stripHeight), [&] {
            strip = QXSDKKovalinTagSelectorView::create(QRectF(), GetParam().look.config());
            return strip;
        });
        QXSDKTagTileList list;
        for (int round = 0; round < rounds; ++round) {
            for (const QString& word : words()) {
                const QString text = round == 0 ? word : QStringLiteral("%1 %2").arg(word).arg(round);
                list.append(themed(text, int(list.size())));
            }
        }
        strip->setTagTiles(std::make_shared<const QXSDKTagTileList>(list));
        static_cast<void>(settledPicture());
    }
    void showPage(int stickers)
    {
        auto list = std::make_shared<KovalinStickerList>();
        for (int number = 0; number < stickers; ++number) {
            const QString path = QStringLiteral("/%1").arg(number);
            pictures.server.script(path.toLatin1(), ScriptedAnswer::ok(encoded(sampleSticker(number))));
            auto sticker = std::make_shared<KovalinSticker>();
            sticker->setComicId(QString::number(number));
            sticker->setUrl(pictures.server.url(path).toString());
            list->append(std::move(sticker));
        }
        show(surroundings(pageHeight), [&] {
            page = QXSDKKovalinTagResultsView::create(themed(words().at(2), 0), list, friends, GetParam().look.config(),
                                                      pictures.cache);
            return page;
        });
        const auto grid = std::static_pointer_cast<CollectionView>(page->subviews().at(0));
        ASSERT_TRUE(waitFor([&] {
            const auto items = grid->indexPathsForVisibleItems();
            return std::ranges::all_of(items, [&](qsizetype item) {
                const auto cell = std::static_pointer_cast<Cell>(grid->cellForItemAtIndexPath(item));
                return cell && cell->isLoaded();
            });
        }));
    }
    [[nodiscard]] testing::AssertionResult looksAs(const char* state)
    {
        return PictureTest::looksAs(scene, GetParam().name() + u'_' + QString::fromLatin1(state));
    }

    QXSDKKovalinStickerPickerSessionManager sessions;
    std::shared_ptr<QXSDKKovalinFriendState> friends = QXSDKKovalinFriendState::create(sessions);
    std::shared_ptr<QXSDKKovalinTagSelectorView> strip;
    std::shared_ptr<QXSDKKovalinTagResultsView> page;
};

TEST_P(TagPicturesTest, pillsFromTheBeginning)
{
    showStrip(6);
    EXPECT_TRUE(looksAs("pills"));
}

TEST_P(TagPicturesTest, fewPills)
{
    showStrip(1);
    EXPECT_TRUE(looksAs("few"));
}

TEST_P(TagPicturesTest, aPressedPill)
{
    showStrip(1);
    const QPointF middle = middleOfPill(*strip, 0);
    press(middle);
    EXPECT_TRUE(looksAs("pressed"));
    release(middle);
}

TEST_P(TagPicturesTest, noResults)
{
    showStrip(0);
    EXPECT_TRUE(looksAs("nothing"));
}

TEST_P(TagPicturesTest, thePageOfATag)
{
    showPage(27);
    EXPECT_TRUE(looksAs("page"));
}

TEST_P(TagPicturesTest, thePageOfATagWithoutStickers)
{
    showPage(0);
    EXPECT_TRUE(looksAs("empty_page"));
}

std::vector<TagPicture> tagPictures()
{
    std::vector<TagPicture> made;
    for (const int width : widths) {
        for (const PictureLook& look : PictureLook::all()) {
            made.push_back({width, look});
        }
    }
    return made;
}

INSTANTIATE_TEST_SUITE_P(Tags, TagPicturesTest, testing::ValuesIn(tagPictures()),
                         [](const auto& given) { return given.param.name().toStdString(); });

} // namespace
