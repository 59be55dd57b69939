#include "picker/PictureLook.h"
#include "picker/grid/LoopbackPictures.h"
#include "picker/grid/QXSDKKovalinStickerGridController.h"
#include "support/PictureTest.h"
#include "support/SampleStickers.h"

#include <QtCore/QMap>

#include <algorithm>
#include <iterator>
#include <memory>
#include <vector>

using namespace kovalin::test;
using kovalin::platform::CollectionView;
using Cell = QXSDKKovalinStickerCollectionViewCell;

namespace {

const QString scene = QStringLiteral("sticker_grid");

enum class Tiles { Loading, Loaded, Failed, Mixed };

struct GridPicture {
    Tiles tiles;
    int width; // points
    PictureLook look = {};

    [[nodiscard]] QString name() const
    {
        static const QMap<Tiles, QString> states = {{Tiles::Loading, QStringLiteral("loading")},
                                                    {Tiles::Loaded, QStringLiteral("loaded")},
                                                    {Tiles::Failed, QStringLiteral("failed")},
                                                    {Tiles::Mixed, QStringLiteral("mixed")}};
        return QStringLiteral("%1_%2_%3").arg(states[tiles]).arg(width).arg(look.name());
    }
};

void PrintTo(const GridPicture& picture, std::ostream* stream)
{
    *stream << picture.name().toStdString();
}

/// The grid's tiles in each state, in windows of a phone, a tablet and what lies between.
class StickerGridPicturesTest : protected WithLoopbackPictures,
                                public PictureTest,
                                public testing::WithParamInterface<GridPicture> {
protected:
    static constexpr int height = 212; // points: two rows and a part of the third
    static constexpr int stickers = 27;

    ~StickerGridPicturesTest() override
    {
        if (grid) {
            grid->view()->removeFromSuperview();
        }
    }

    static Tiles stateOf(int sticker)
    {
        constexpr Tiles states[] = {Tiles::Loaded, Tiles::Loading, Tiles::Failed, Tiles::Loaded, Tiles::Loaded};
        return GetParam().tiles == Tiles::Mixed ? states[sticker % std::ssize(states)] : GetParam().tiles;
    }

    /// Has the servers answer for the sticker, and gives its address.
    QUrl scripted(int sticker)
    {
        const QString path = QStringLiteral("/%1").arg(sticker);
        switch (stateOf(sticker)) {
        case Tiles::Loading:
            silent.script(path.toLatin1(), ScriptedAnswer::never());
            return silent.url(path);
        case Tiles::Failed:
            pictures.server.script(path.toLatin1(), ScriptedAnswer::withStatus(500));
            break;
        default:
            pictures.server.script(path.toLatin1(), ScriptedAnswer::ok(encoded(sampleSticker(sticker))));
        }
        return pictures.server.url(path);
    }

    QXSDKKovalinStickerGridController::List list()
    {
        auto made = std::make_shared<KovalinStickerList>();
        for (int number = 0; number < stickers; ++number) {
            auto sticker = std::make_shared<KovalinSticker>();
            sticker->setComicId(QString::number(number));
            sticker->setUrl(scripted(number).toString());
            made->append(std::move(sticker));
        }
        return made;
    }

    void showGrid()
    {
        const auto& [tiles, width, look] = GetParam();
        const Surroundings surroundings{
            .size = {width, height}, .background = look.theme()->backgroundColor(), .direction = look.direction};
        show(surroundings, [&] {
            grid = QXSDKKovalinStickerGridController::create(list(), GetParam().look.config(), pictures.cache);
            return grid->view();
        });
    }

    /// All tiles on screen have the state that they are to be seen in.
    [[nodiscard]] bool areTilesThere() const
    {
        const QList<qsizetype> items = grid->view()->indexPathsForVisibleItems();
        return !items.isEmpty() && std::ranges::all_of(items, [this](qsizetype item) {
            const auto cell = std::static_pointer_cast<Cell>(grid->view()->cellForItemAtIndexPath(item));
            const Tiles state = stateOf(static_cast<int>(item));
            return cell && cell->isLoading() == (state == Tiles::Loading) &&
                   cell->isLoaded() == (state == Tiles::Loaded);
        });
    }

    /// Answers nothing. A server of its own, since what is asked of one server waits for each other.
    LoopbackServer silent;
    QXSDKKovalinStickerGridController::Ptr grid;
};

TEST_P(StickerGridPicturesTest, looksAsItsPicture)
{
    showGrid();
    ASSERT_TRUE(waitFor([this] { return areTilesThere(); }));
    EXPECT_TRUE(looksAs(scene, GetParam().name()));
}

std::vector<GridPicture> gridPictures()
{
    std::vector<GridPicture> made;
    for (const Tiles tiles : {Tiles::Loading, Tiles::Loaded, Tiles::Failed, Tiles::Mixed}) {
        for (const int width : pictureWidths) {
            for (const PictureLook& look : PictureLook::all()) {
                made.push_back({tiles, width, look});
            }
        }
    }
    return made;
}

INSTANTIATE_TEST_SUITE_P(Grids, StickerGridPicturesTest, testing::ValuesIn(gridPictures()),
                         [](const auto& given) { return given.param.name().toStdString(); });

} // namespace
