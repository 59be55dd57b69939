#include "platform/ui/Button.h"
#include "platform/ui/Label.h"
#include "support/PictureDifference.h"
#include "support/PictureTest.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>

using namespace kovalin::platform;
using kovalin::test::PictureDifference;

namespace {

const QString scene = QStringLiteral("views");

/// Pictures of single views: what unit tests look at point by point, seen whole.
class ViewPicturesTest : public kovalin::test::PictureTest {
protected:
    static constexpr QSize buttonSize{180, 48};

    static QFont font(int pixelSize, bool isBold = false)
    {
        QFont font = QGuiApplication::font();
        font.setPixelSize(pixelSize);
        font.setBold(isBold);
        return font;
    }

    static QImage star()
    {
        constexpr int side = 40; // twice the points
        QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        image.setDevicePixelRatio(2);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        painter.drawPolygon(
            QPolygonF({{10, 0}, {13, 7}, {20, 7}, {15, 12}, {17, 20}, {10, 15}, {3, 20}, {5, 12}, {0, 7}, {7, 7}}),
            Qt::WindingFill);
        return image;
    }

    static std::shared_ptr<Button> newButton()
    {
        auto button = makeView<Button>();
        button->setTitle(QStringLiteral("Try again"));
        button->setTitleFont(font(16, true));
        button->setTitleColor(Qt::white);
        button->setTintColor(Qt::white);
        button->setImage(star(), true);
        button->setBackgroundColor(QColor(0x2D, 0x6C, 0xDF));
        button->setCornerRadius(12);
        return button;
    }

    void showLabel(const QString& text, Qt::LayoutDirection direction)
    {
        show({.size = {220, 60}, .direction = direction}, [&] {
            auto label = makeView<Label>();
            label->setFont(font(15));
            label->setNumberOfLines(2);
            label->setTextColor(QColor(0x20, 0x24, 0x2A));
            label->setBackgroundColor(QColor(0xF4, 0xF1, 0xEA));
            label->setText(text);
            return label;
        });
    }
};

TEST_F(ViewPicturesTest, buttonWithTitleAndPicture)
{
    show({.size = buttonSize}, newButton);
    EXPECT_TRUE(looksAs(scene, QStringLiteral("button")));
    press({90, 24});
    EXPECT_TRUE(looksAs(scene, QStringLiteral("button_pressed")));
    release({90, 24});
    EXPECT_TRUE(looksAs(scene, QStringLiteral("button")));
}

TEST_F(ViewPicturesTest, labels)
{
    showLabel(QStringLiteral("Stickers of you and your friends, for each mood and season of the year"),
              Qt::LeftToRight);
    EXPECT_TRUE(looksAs(scene, QStringLiteral("label")));
}

TEST_F(ViewPicturesTest, labelsFromRightToLeft)
{
    showLabel(QStringLiteral("ملصقات لك ولأصدقائك"), Qt::RightToLeft);
    EXPECT_TRUE(looksAs(scene, QStringLiteral("label_right_to_left")));
}

TEST_F(ViewPicturesTest, panels)
{
    show({.size = {220, 130}, .background = QColor(0x1C, 0x1E, 0x22)}, [] {
        auto ground = makeView<View>();
        const auto add = [&](const QRectF& frame, double radius, const QColor& color) {
            auto panel = makeView<View>();
            panel->setFrame(frame);
            panel->setBackgroundColor(color);
            panel->setCornerRadius(radius);
            ground->addSubview(panel);
            return panel;
        };
        ground->setBackgroundColor(QColor(0xEE, 0xF0, 0xF3));
        add({10, 10, 90, 34}, 17, QColor(0xE5, 0x57, 0x4B));
        add({120, 10, 90, 34}, 6, Qt::white)->setBorder(1, QColor(0x9A, 0xA0, 0xA8));
        add({20, 64, 180, 46}, 10, Qt::white)->setShadow({QColor(0, 0, 0, 90), 6, {0, 3}});
        return ground;
    });
    EXPECT_TRUE(looksAs(scene, QStringLiteral("panels")));
}

TEST_F(ViewPicturesTest, aTitleThatHasMovedByAPointIsCaught)
{
    std::shared_ptr<Button> button;
    show({.size = buttonSize}, [&] { return button = newButton(); });
    const QImage before = settledPicture();
    button->setContentInsets({2, 0, 0, 0}); // what is centred moves by half of it
    EXPECT_FALSE(PictureDifference::of(settledPicture(), before).isTolerable());
    button->setContentInsets({});
    EXPECT_TRUE(PictureDifference::of(settledPicture(), before).isTolerable());
}

TEST_F(ViewPicturesTest, aMissingPictureIsCaught)
{
    std::shared_ptr<Button> button;
    show({.size = buttonSize}, [&] { return button = newButton(); });
    const QImage before = settledPicture();
    button->setImage({});
    EXPECT_FALSE(PictureDifference::of(settledPicture(), before).isTolerable());
}

} // namespace
