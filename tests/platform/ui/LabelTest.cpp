#include "platform/ui/Label.h"

#include "support/QtPrinting.h"
#include "support/ViewTest.h"

#include <cmath>
#include <optional>

using namespace kovalin::platform;

namespace {

class LabelTest : public kovalin::test::ViewTest {
protected:
    LabelTest()
    {
        QFont font;
        font.setPixelSize(16);
        label->setFont(font);
        label->setFrame({0, 0, side, 40});
        root()->addSubview(label);
    }

    /// The columns, in points, between which there is ink; absent without any.
    std::optional<std::pair<double, double>> ink()
    {
        const QImage picture = grab();
        std::optional<std::pair<double, double>> columns;
        for (int x = 0; x < picture.width(); ++x) {
            for (int y = 0; y < picture.height(); ++y) {
                if (picture.pixelColor(x, y).lightness() < 128) {
                    columns = {columns ? columns->first : x / ratio(), x / ratio()};
                }
            }
        }
        return columns;
    }

    std::shared_ptr<Label> label = makeView<Label>();
    static constexpr QSizeF unlimited{10000, 10000};
};

TEST_F(LabelTest, showsItsTextInItsColour)
{
    EXPECT_EQ(ink(), std::nullopt);
    label->setText(QStringLiteral("████"));
    label->setTextColor(Qt::red);
    EXPECT_EQ(colorAt({8, 20}), QColor(Qt::red));
}

TEST_F(LabelTest, measuresAtOnceAndInWholePoints)
{
    EXPECT_EQ(label->sizeThatFits(unlimited), QSizeF(0, 0));
    label->setText(QStringLiteral("Hello"));
    const QSizeF size = label->sizeThatFits(unlimited);
    EXPECT_GT(size.width(), 20);
    EXPECT_GE(size.height(), 16);
    EXPECT_EQ(size, QSizeF(std::ceil(size.width()), std::ceil(size.height())));
    label->sizeToFit();
    EXPECT_EQ(label->frame(), QRectF(QPointF(0, 0), size));
}

TEST_F(LabelTest, whatFitsIsShownWhole)
{
    label->setText(QStringLiteral("Hello, hello"));
    const QSizeF roomy = label->sizeThatFits(unlimited);
    const auto whole = ink();
    label->setFrame({QPointF(0, 0), roomy});
    EXPECT_EQ(ink(), whole);
}

TEST_F(LabelTest, aLongerLineIsElided)
{
    label->setText(QStringLiteral("iiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiii"));
    label->setFrame({0, 0, 60, 40});
    ASSERT_TRUE(ink());
    EXPECT_LE(ink()->second, 60);
    label->setElide(TextElide::None);
    EXPECT_GT(ink()->second, 60);
}

TEST_F(LabelTest, linesAreWrappedUpToTheirNumber)
{
    label->setText(QStringLiteral("one two three four five six seven eight nine ten"));
    const double line = label->sizeThatFits(unlimited).height();
    EXPECT_EQ(label->sizeThatFits({60, 1000}).height(), line);
    label->setNumberOfLines(2);
    EXPECT_NEAR(label->sizeThatFits({60, 1000}).height(), 2 * line, 2);
    label->setNumberOfLines(0);
    EXPECT_GT(label->sizeThatFits({60, 1000}).height(), 4 * line);
    EXPECT_LE(label->sizeThatFits({60, 1000}).width(), 60);
    EXPECT_EQ(label->sizeThatFits({60, 30}).height(), line);
}

TEST_F(LabelTest, measuringLeavesWhatIsShownAlone)
{
    label->setNumberOfLines(0);
    label->setText(QStringLiteral("one two three four five six"));
    const QImage before = grab();
    EXPECT_GT(label->sizeThatFits({30, 1000}).height(), 40);
    EXPECT_EQ(grab(), before);
}

TEST_F(LabelTest, alignmentMovesTheText)
{
    label->setText(QStringLiteral("ab"));
    label->setTextAlignment(TextAlignment::Left);
    const auto left = ink();
    label->setTextAlignment(TextAlignment::Right);
    const auto right = ink();
    label->setTextAlignment(TextAlignment::Center);
    const auto center = ink();
    ASSERT_TRUE(left && right && center);
    EXPECT_LT(left->second, 40);
    EXPECT_GT(right->first, 160);
    EXPECT_NEAR((center->first + center->second) / 2, 100, 2);
}

TEST_F(LabelTest, naturallyATextBeginsWhereItsScriptDoes)
{
    label->setText(QStringLiteral("ab"));
    EXPECT_LT(ink()->second, 40);
    label->setText(QStringLiteral("אב"));
    ASSERT_TRUE(ink());
    EXPECT_GT(ink()->first, 160);
    label->setTextAlignment(TextAlignment::Left);
    EXPECT_LT(ink()->second, 40);
    label->setTextAlignment(TextAlignment::Natural);
    EXPECT_GT(ink()->first, 160);
}

TEST_F(LabelTest, markupIsText)
{
    const QString markup = QStringLiteral("<b>a</b> & <img src='x'>");
    label->setText(markup);
    const double plain = label->sizeThatFits(unlimited).width();
    EXPECT_GT(plain, 120);
    label->setTextRuns({{markup, false}});
    EXPECT_EQ(label->text(), markup);
    EXPECT_NEAR(label->sizeThatFits(unlimited).width(), plain, 1);
}

TEST_F(LabelTest, aPieceMayBeBold)
{
    label->setTextRuns({{QStringLiteral("Turn it "), false}, {QStringLiteral("on now"), false}});
    const double plain = label->sizeThatFits(unlimited).width();
    label->setTextRuns({{QStringLiteral("Turn it "), false}, {QStringLiteral("on now"), true}});
    EXPECT_EQ(label->text(), QStringLiteral("Turn it on now"));
    EXPECT_GT(label->sizeThatFits(unlimited).width(), plain);
    label->setText(QStringLiteral("Turn it on now"));
    EXPECT_NEAR(label->sizeThatFits(unlimited).width(), plain, 1);
}

TEST_F(LabelTest, pointsOfAFontAreThoseOfAView)
{
    label->setText(QStringLiteral("Hello"));
    const QSizeF inPixels = label->sizeThatFits(unlimited);
    QFont font;
    font.setPointSizeF(16);
    label->setFont(font);
    EXPECT_EQ(label->font().pixelSize(), 16);
    EXPECT_EQ(label->sizeThatFits(unlimited), inPixels);
}

TEST_F(LabelTest, assistiveToolsReadTheText)
{
    label->setText(QStringLiteral("Hello"));
    QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(label.get());
    ASSERT_NE(told, nullptr);
    EXPECT_EQ(told->role(), QAccessible::StaticText);
    EXPECT_EQ(told->text(QAccessible::Name), QStringLiteral("Hello"));
}

} // namespace
