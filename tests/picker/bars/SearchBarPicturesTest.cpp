#include "picker/PictureLook.h"
#include "picker/bars/KovalinSearchBarView.h"
#include "picker/config/QXSDKKovalinLanguage.h"
#include "support/PictureTest.h"

#include <QtTest/QTest>

using kovalin::platform::makeView;
using kovalin::test::PictureLook;

namespace {

const QString scene = QStringLiteral("search_bar");

/// The bar in each of its states by focus and text, as in the table of its rules.
class SearchBarPicturesTest : public kovalin::test::PictureTest, public testing::WithParamInterface<PictureLook> {
protected:
    static constexpr QSize size{412, 48};
    static constexpr QPointF inField{200, 24};

    void SetUp() override
    {
        PictureTest::SetUp();
        if (!IsSkipped() && !HasFatalFailure()) {
            showBar(size);
        }
    }

    void TearDown() override { QXSDKKovalinSetPreferredLanguages({}); }

    void showBar(const QSize& barSize)
    {
        const PictureLook& look = GetParam();
        const bool isRightToLeft = look.direction == Qt::RightToLeft;
        QXSDKKovalinSetPreferredLanguages({isRightToLeft ? QStringLiteral("ar") : QStringLiteral("en")});
        show({.size = barSize, .background = look.theme()->backgroundColor(), .direction = look.direction},
             [&] { return bar = makeView<KovalinSearchBarView>(QRectF(QPointF(), barSize), look.config()); });
    }

    void type(const QString& text)
    {
        for (const QChar letter : text) {
            QTest::keyClick(&window(), letter.toLatin1());
        }
    }

    [[nodiscard]] testing::AssertionResult looksAs(const char* state)
    {
        return PictureTest::looksAs(scene, GetParam().name() + u'_' + QString::fromLatin1(state));
    }

    std::shared_ptr<KovalinSearchBarView> bar;
};

TEST_P(SearchBarPicturesTest, withoutFocusAndText)
{
    EXPECT_TRUE(looksAs("resting"));
}

TEST_P(SearchBarPicturesTest, withFocusAndNoText)
{
    tap(inField);
    ASSERT_TRUE(bar->isFirstResponder());
    EXPECT_TRUE(looksAs("focused"));
}

TEST_P(SearchBarPicturesTest, withFocusAndText)
{
    tap(inField);
    type(QStringLiteral("happy cat"));
    ASSERT_EQ(bar->text(), QStringLiteral("happy cat"));
    EXPECT_TRUE(looksAs("typed"));
}

TEST_P(SearchBarPicturesTest, withFocusAndEmptiedByTyping)
{
    tap(inField);
    type(QStringLiteral("h"));
    QTest::keyClick(&window(), Qt::Key_Backspace);
    ASSERT_TRUE(bar->isFirstResponder());
    EXPECT_TRUE(looksAs("emptied"));
}

TEST_P(SearchBarPicturesTest, withTextAndNoFocus)
{
    tap(inField);
    type(QStringLiteral("happy cat"));
    QTest::keyClick(&window(), Qt::Key_Return);
    ASSERT_FALSE(bar->isFirstResponder());
    ASSERT_EQ(bar->text(), QStringLiteral("happy cat"));
    EXPECT_TRUE(looksAs("left"));
}

INSTANTIATE_TEST_SUITE_P(Looks, SearchBarPicturesTest,
                         testing::Values(PictureLook{}, PictureLook{.isDark = true},
                                         PictureLook{.direction = Qt::RightToLeft},
                                         PictureLook{.isDark = true, .direction = Qt::RightToLeft}),
                         [](const auto& look) { return look.param.name().toStdString(); });

} // namespace
