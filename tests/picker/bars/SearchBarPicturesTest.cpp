#include "picker/PictureLook.h"
#include "picker/bars/KovalinSearchBarView.h"
#include "picker/config/QXSDKKovalinLanguage.h"
#include "support/PictureTest.h"

#include <QtTest/QTest>

#include <ostream>
#include <vector>

using kovalin::platform::makeView;
using kovalin::test::PictureLook;
using kovalin::test::pictureWidths;

namespace {

const QString scene = QStringLiteral("search_bar");

struct BarPicture {
    int width; // points
    PictureLook look = {};

    [[nodiscard]] QString name() const { return QStringLiteral("%1_%2").arg(width).arg(look.name()); }
};

void PrintTo(const BarPicture& picture, std::ostream* stream)
{
    *stream << picture.name().toStdString();
}

/// The bar in each of its states by focus and text, as in the table of its rules.
class SearchBarPicturesTest : public kovalin::test::PictureTest, public testing::WithParamInterface<BarPicture> {
protected:
    static constexpr int height = 40; // points
    static constexpr QPointF inField{200, 20};

    void SetUp() override
    {
        PictureTest::SetUp();
        if (!IsSkipped() && !HasFatalFailure()) {
            showBar({GetParam().width, height});
        }
    }

    void TearDown() override { QXSDKKovalinSetPreferredLanguages({}); }

    void showBar(const QSize& barSize)
    {
        const PictureLook& look = GetParam().look;
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

TEST_P(SearchBarPicturesTest, withATextThatIsTooLong)
{
    bar->setText(QStringLiteral("a happy cat that waves to its friend, ").repeated(4));
    EXPECT_TRUE(looksAs("too_long"));
}

std::vector<BarPicture> barPictures()
{
    std::vector<BarPicture> made;
    for (const int width : pictureWidths) {
        for (const PictureLook& look : PictureLook::all()) {
            made.push_back({width, look});
        }
    }
    return made;
}

INSTANTIATE_TEST_SUITE_P(Bars, SearchBarPicturesTest, testing::ValuesIn(barPictures()),
                         [](const auto& given) { return given.param.name().toStdString(); });

} // namespace
