#include "picker/PictureLook.h"
#include "picker/config/KovalinString.h"
#include "picker/config/QXSDKKovalinLanguage.h"
#include "picker/status/QXSDKKovalinCreateAvatarView.h"
#include "picker/status/QXSDKKovalinErrorView.h"
#include "picker/status/QXSDKKovalinLoginView.h"
#include "picker/status/QXSDKKovalinNoPermissionView.h"
#include "support/PictureTest.h"
#include "support/RecordingLoginClient.h"

#include <functional>
#include <memory>
#include <ostream>
#include <vector>

using namespace kovalin::platform;
using kovalin::test::PictureLook;
using kovalin::test::waitFor;

namespace {

const QString scene = QStringLiteral("status");

struct StatusPicture {
    int width; // points
    PictureLook look = {};

    [[nodiscard]] QString name() const { return QStringLiteral("%1_%2").arg(width).arg(look.name()); }
};

void PrintTo(const StatusPicture& picture, std::ostream* stream)
{
    *stream << picture.name().toStdString();
}

/// Each full-size view but the stickers in each of its states, in English, and in Arabic from right to left.
class StatusPicturesTest : public kovalin::test::PictureTest, public testing::WithParamInterface<StatusPicture> {
protected:
    static constexpr int height = 260; // points

    void TearDown() override { QXSDKKovalinSetPreferredLanguages({}); }

    void showView(const std::function<std::shared_ptr<View>(const QXSDKKovalinStickerPickerConfigPtr&)>& newView)
    {
        const auto& [width, look] = GetParam();
        const bool isRightToLeft = look.direction == Qt::RightToLeft;
        QXSDKKovalinSetPreferredLanguages({isRightToLeft ? QStringLiteral("ar") : QStringLiteral("en")});
        show({.size = {width, height}, .background = look.theme()->backgroundColor(), .direction = look.direction},
             [&] { return view = newView(GetParam().look.config()); });
    }
    void showLogin()
    {
        showView([](const auto& config) { return QXSDKKovalinLoginView::create({}, config); });
    }
    void showCreateAvatar()
    {
        showView([](const auto& config) { return makeView<QXSDKKovalinCreateAvatarView>(QRectF(), config); });
    }
    void showNoPermission()
    {
        showView([](const auto& config) { return QXSDKKovalinNoPermissionView::create({}, config); });
    }
    void showError()
    {
        showView([](const auto& config) {
            return makeView<QXSDKKovalinErrorView>(kovalinStringWithKey(QStringLiteral("server_error_title")),
                                                   kovalinStringWithKey(QStringLiteral("server_error_message")),
                                                   nullptr, config);
        });
    }

    [[nodiscard]] QPointF middleOf(qsizetype part) const { return view->subviews().at(part)->center(); }
    [[nodiscard]] testing::AssertionResult looksAs(const char* state)
    {
        return PictureTest::looksAs(scene, GetParam().name() + u'_' + QString::fromLatin1(state));
    }

    std::shared_ptr<View> view;
};

TEST_P(StatusPicturesTest, theLogin)
{
    showLogin();
    EXPECT_TRUE(looksAs("login"));
}

TEST_P(StatusPicturesTest, theLoginWhileItsButtonIsPressed)
{
    showLogin();
    press(middleOf(0));
    EXPECT_TRUE(looksAs("login_pressed"));
}

TEST_P(StatusPicturesTest, theAvatarToBeCreated)
{
    showCreateAvatar();
    EXPECT_TRUE(looksAs("create_avatar"));
}

TEST_P(StatusPicturesTest, theAvatarToBeCreatedWhileItsButtonIsPressed)
{
    showCreateAvatar();
    press(middleOf(2));
    EXPECT_TRUE(looksAs("create_avatar_pressed"));
}

TEST_P(StatusPicturesTest, theMissingPermission)
{
    showNoPermission();
    EXPECT_TRUE(looksAs("no_permission"));
}

TEST_P(StatusPicturesTest, theMissingPermissionDuringALogin)
{
    showNoPermission();
    kovalin::test::RecordingLoginClient::tellLoginStarted();
    ASSERT_TRUE(waitFor([this] { return !view->subviews().at(1)->isEnabled(); }));
    EXPECT_TRUE(looksAs("no_permission_logging_in"));
}

TEST_P(StatusPicturesTest, theError)
{
    showError();
    EXPECT_TRUE(looksAs("error"));
}

TEST_P(StatusPicturesTest, theErrorWhileItIsTriedAgain)
{
    showError();
    tap(middleOf(2));
    ASSERT_FALSE(view->subviews().at(3)->isHidden());
    EXPECT_TRUE(looksAs("error_retrying"));
}

std::vector<StatusPicture> statusPictures()
{
    std::vector<StatusPicture> made;
    for (const int width : {200, 320, 412, 1024}) {
        for (const PictureLook& look : PictureLook::all()) {
            made.push_back({width, look});
        }
    }
    return made;
}

INSTANTIATE_TEST_SUITE_P(Views, StatusPicturesTest, testing::ValuesIn(statusPictures()),
                         [](const auto& given) { return given.param.name().toStdString(); });

} // namespace
