// Whether the texts of each language have the place that the views give them.

#include "kits/login/ui/LoginButtonTitle.h"
#include "picker/config/KovalinString.h"
#include "picker/status/QXSDKKovalinCreateAvatarView.h"
#include "picker/status/QXSDKKovalinErrorView.h"
#include "picker/status/QXSDKKovalinLoginView.h"
#include "picker/status/QXSDKKovalinNoPermissionView.h"
#include "picker/status/StatusViewTest.h"
#include "platform/ui/Button.h"
#include "support/TestFont.h"

#include <QtCore/QString>

#include <array>

using namespace kovalin::platform;
using kovalin::test::partOf;

namespace {

class StatusTextsTest : public kovalin::test::StatusViewTest, public testing::WithParamInterface<QString> {
protected:
    static constexpr std::array widths{200, 320, 400};
    static constexpr double unlimited = 1e6;

    StatusTextsTest()
    {
        QXSDKKovalinSetPreferredLanguages({GetParam()});
        const bool isRightToLeft = GetParam() == QStringLiteral("ar") || GetParam() == QStringLiteral("he");
        QGuiApplication::setLayoutDirection(isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    }
    ~StatusTextsTest() override { QGuiApplication::setFont(_fontBefore); }

    void SetUp() override
    {
        const QString missing = kovalin::test::installTestFont();
        if (!missing.isEmpty()) {
            GTEST_SKIP() << missing.toStdString();
        }
    }

    /// All of its lines are in its frame, which is in the view.
    static void expectWrapped(const View& view, const Label& label)
    {
        SCOPED_TRACE(label.text().toStdString());
        EXPECT_FALSE(label.text().isEmpty());
        EXPECT_EQ(label.frame().height(), label.sizeThatFits({label.frame().width(), unlimited}).height());
        EXPECT_LE(label.sizeThatFits({label.frame().width(), unlimited}).width(), label.frame().width());
        EXPECT_TRUE(view.bounds().contains(label.frame()));
    }
    /// Its one line is as wide as it would like to be.
    static void expectWhole(const Label& label)
    {
        EXPECT_LE(label.sizeThatFits({unlimited, unlimited}).width(), label.frame().width())
            << label.text().toStdString();
    }
    static void expectTitleFits(const Button& button)
    {
        expectWhole(*partOf<Label>(button, 1));
        EXPECT_GT(partOf<Label>(button, 1)->frame().left(), button.layerStyle().cornerRadius / 2);
    }

private:
    const QFont _fontBefore = QGuiApplication::font();
};

TEST_P(StatusTextsTest, ofTheLoginViewHaveTheirPlace)
{
    for (const int width : widths) {
        SCOPED_TRACE(width);
        const auto view = QXSDKKovalinLoginView::create({}, nullptr);
        place(view, QSizeF(width, 400));
        const auto title = partOf<Label>(*view, 2);
        expectWrapped(*view, *title);
        EXPECT_LE(title->frame().bottom(), partOf<ImageView>(*view, 1)->frame().top()) << "clear of the picture";
        expectTitleFits(*partOf<Button>(*view, 0));
        EXPECT_TRUE(view->bounds().contains(partOf<Button>(*view, 0)->frame()));
        EXPECT_EQ(partOf<Button>(*view, 0)->title(), kovalin::kits::loginButtonTitle(GetParam()));
    }
}

TEST_P(StatusTextsTest, ofTheCreateAvatarViewHaveTheirPlace)
{
    for (const int width : widths) {
        SCOPED_TRACE(width);
        const auto view = makeView<QXSDKKovalinCreateAvatarView>(QRectF(), nullptr);
        place(view, QSizeF(width, 400));
        const auto title = partOf<Label>(*view, 0);
        expectWrapped(*view, *title);
        EXPECT_LE(title->frame().bottom(), partOf<ImageView>(*view, 3)->frame().top()) << "clear of the picture";
        expectTitleFits(*partOf<Button>(*view, 2));
    }
}

TEST_P(StatusTextsTest, ofOneLineAreWhole)
{
    for (const int width : widths) {
        SCOPED_TRACE(width);
        const auto login = QXSDKKovalinLoginView::create({}, nullptr);
        place(login, QSizeF(width, 400));
        expectWhole(*partOf<Label>(*login, 3));
        const auto createAvatar = makeView<QXSDKKovalinCreateAvatarView>(QRectF(), nullptr);
        place(createAvatar, QSizeF(width, 400));
        expectWhole(*partOf<Label>(*createAvatar, 1));
    }
}

TEST_P(StatusTextsTest, ofTheNoPermissionViewHaveTheirPlace)
{
    for (const int width : widths) {
        SCOPED_TRACE(width);
        const auto view = QXSDKKovalinNoPermissionView::create({}, nullptr);
        place(view, QSizeF(width, 400));
        expectWrapped(*view, *partOf<Label>(*view, 0));
        expectTitleFits(*partOf<Button>(*view, 1));
    }
}

TEST_P(StatusTextsTest, ofTheErrorViewHaveTheirPlace)
{
    for (const int width : widths) {
        for (const char* const error : {"network_error", "server_error"}) {
            SCOPED_TRACE(error);
            const QString key = QString::fromLatin1(error);
            const auto view = makeView<QXSDKKovalinErrorView>(kovalinStringWithKey(key + QStringLiteral("_title")),
                                                              kovalinStringWithKey(key + QStringLiteral("_message")),
                                                              nullptr, nullptr);
            place(view, QSizeF(width, 400));
            expectWrapped(*view, *partOf<Label>(*view, 0));
            expectWrapped(*view, *partOf<Label>(*view, 1));
            expectTitleFits(*partOf<Button>(*view, 2));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, StatusTextsTest,
                         testing::Values(QStringLiteral("ar"), QStringLiteral("de"), QStringLiteral("en"),
                                         QStringLiteral("es"), QStringLiteral("fr"), QStringLiteral("he"),
                                         QStringLiteral("it"), QStringLiteral("ja"), QStringLiteral("ko"),
                                         QStringLiteral("pt"), QStringLiteral("zh-Hans"), QStringLiteral("zh-Hant")),
                         [](const auto& language) { return QString(language.param).remove(u'-').toStdString(); });

TEST(StatusTexts, areLookedAtInEveryLanguage)
{
    EXPECT_EQ(QXSDKKovalinAvailableLanguages(), kovalin::kits::loginButtonLanguages());
    EXPECT_EQ(QXSDKKovalinAvailableLanguages().size(), 12);
}

} // namespace
