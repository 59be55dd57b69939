#include "content/QXSDKKovalinFriendState.h"
#include "picker/PictureLook.h"
#include "picker/icon/IconTesting.h"
#include "support/PictureTest.h"
#include "support/SampleStickers.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <memory>
#include <ostream>
#include <vector>

using namespace kovalin::test;

namespace {

const QString scene = QStringLiteral("icon");

struct IconPicture {
    int width; // points
    PictureLook look = {};

    [[nodiscard]] QString name() const { return QStringLiteral("%1_%2").arg(width).arg(look.name()); }
};

void PrintTo(const IconPicture& picture, std::ostream* stream)
{
    *stream << picture.name().toStdString();
}

/// An icon that is as wide as its window, with each of its pictures.
class IconPicturesTest : protected WithLoopbackPictures,
                         public PictureTest,
                         public testing::WithParamInterface<IconPicture> {
protected:
    static constexpr int height = 64; // points

    IconPicturesTest()
    {
        pictures.server.script("/selfie", ScriptedAnswer::ok(encoded(sampleSticker(3))));
        pictures.server.script("/sticker", ScriptedAnswer::ok(encoded(sampleSticker(8))));
    }

    void SetUp() override
    {
        PictureTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) {
            return;
        }
        const auto& [width, look] = GetParam();
        show({.size = {width, height}, .background = look.theme()->backgroundColor(), .direction = look.direction},
             [&] { return icon = QXSDKKovalinIconView::create(pictures.cache); });
        drainMainQueue();
    }

    [[nodiscard]] bool comesToShowADownload() const
    {
        return waitFor([this] { return imageViewOf(*icon)->image().size() == sampleSticker(0).size(); });
    }
    [[nodiscard]] testing::AssertionResult looksAs(const char* picture)
    {
        return PictureTest::looksAs(scene, GetParam().name() + u'_' + QString::fromLatin1(picture));
    }

    InstalledLoginClient login;
    std::shared_ptr<QXSDKKovalinIconView> icon;
};

TEST_P(IconPicturesTest, byDefault)
{
    EXPECT_TRUE(looksAs("default"));
}

TEST_P(IconPicturesTest, withTheAvatar)
{
    answerAvatar(*login, 0, pictures.url("/selfie"));
    ASSERT_TRUE(comesToShowADownload());
    EXPECT_TRUE(looksAs("selfie"));
}

TEST_P(IconPicturesTest, withASticker)
{
    QXSDKKovalinStickerPickerSessionManager sessions;
    const auto friends = QXSDKKovalinFriendState::create(sessions);
    auto sticker = std::make_shared<KovalinSticker>();
    sticker->setUrl(pictures.url("/sticker").toString());
    icon->updateWithKovalinSticker(sticker, *friends, [](bool) {});
    ASSERT_TRUE(comesToShowADownload());
    EXPECT_TRUE(looksAs("sticker"));
}

std::vector<IconPicture> iconPictures()
{
    std::vector<IconPicture> made;
    for (const int width : {200, 320, 412, 1024}) {
        for (const PictureLook& look : PictureLook::all()) {
            made.push_back({width, look});
        }
    }
    return made;
}

INSTANTIATE_TEST_SUITE_P(Icons, IconPicturesTest, testing::ValuesIn(iconPictures()),
                         [](const auto& given) { return given.param.name().toStdString(); });

} // namespace
