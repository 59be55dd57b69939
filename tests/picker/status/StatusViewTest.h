#pragma once

#include "picker/config/QXSDKKovalinLanguage.h"
#include "picker/config/QXSDKKovalinStickerPickerConfigBuilder.h"
#include "platform/foundation/Color.h"
#include "platform/ui/ImageView.h"
#include "platform/ui/Label.h"
#include "support/PartOf.h"
#include "support/QtPrinting.h"
#include "support/ViewTest.h"

#include <QtGui/QGuiApplication>

#include <gtest/gtest.h>

#include <array>
#include <memory>

namespace kovalin::test {

/// How a label is set up.
struct LabelLook {
    int fontSize; // points
    QFont::Weight weight;
    QColor color;
    int lines; // 0 is any number
};

/// A test of full-size views in a window of 400 × 400 points, in English.
class StatusViewTest : public ViewTest {
protected:
    static constexpr int side = 400;
    static constexpr std::array directions{Qt::LeftToRight, Qt::RightToLeft};

    StatusViewTest()
    {
        QXSDKKovalinSetPreferredLanguages({QStringLiteral("en")});
        window().resize(side, side);
        root()->setFrame({0, 0, side, side});
    }
    ~StatusViewTest() override
    {
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        QXSDKKovalinSetPreferredLanguages({});
    }

    static QXSDKKovalinStickerPickerConfigPtr configOf(const QXSDKKovalinStickerPickerThemePtr& theme)
    {
        return QXSDKKovalinStickerPickerConfigBuilder().withTheme(theme).build();
    }

    /// In place of what is in the window, and laid out.
    void place(const std::shared_ptr<platform::View>& view, const QSizeF& size = {side, side})
    {
        for (const auto& former : root()->subviews()) {
            former->removeFromSuperview();
        }
        view->setFrame(QRectF(QPointF(), size));
        root()->addSubview(view);
        grab();
    }

    static void expectLook(const platform::Label& label, const LabelLook& look)
    {
        SCOPED_TRACE(label.text().toStdString());
        EXPECT_EQ(label.font().pixelSize(), look.fontSize);
        EXPECT_EQ(label.font().weight(), look.weight);
        EXPECT_TRUE(platform::colorsEqual(label.textColor(), look.color)) << label.textColor().name().toStdString();
        EXPECT_EQ(label.textAlignment(), platform::TextAlignment::Center);
        EXPECT_EQ(label.numberOfLines(), look.lines);
    }
};

} // namespace kovalin::test
