// In a program of its own, whose configuration tells of no QML modules.

#include "platform/ui/Button.h"
#include "platform/ui/Label.h"
#include "platform/ui/ScrollView.h"
#include "platform/ui/TextField.h"
#include "support/ViewTest.h"

#include <QtCore/QStringList>
#include <QtTest/QTest>

using namespace kovalin::platform;

namespace {

/// Of the whole program: each missing part is told of once.
QStringList& errors()
{
    static QStringList lines;
    return lines;
}

void keepErrors(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message)
{
    if (type == QtCriticalMsg) {
        errors().append(message);
    }
}

class MissingModulesTest : public kovalin::test::ViewTest {
protected:
    MissingModulesTest() { qInstallMessageHandler(keepErrors); }
    ~MissingModulesTest() override { qInstallMessageHandler(nullptr); }
};

TEST_F(MissingModulesTest, aLabelIsAnEmptyViewAndALogLine)
{
    const auto label = makeView<Label>();
    EXPECT_FALSE(errors().filter(QStringLiteral("A part of Qt Quick is missing")).isEmpty());
    label->setText(QStringLiteral("████"));
    label->setNumberOfLines(0);
    label->setTextAlignment(TextAlignment::Center);
    label->setFrame({0, 0, 100, 100});
    label->setBackgroundColor(Qt::yellow);
    root()->addSubview(label);
    EXPECT_EQ(label->text(), QStringLiteral("████"));
    EXPECT_EQ(label->sizeThatFits({100, 100}), QSizeF(0, 0));
    EXPECT_EQ(colorAt({50, 50}), QColor(Qt::yellow));
}

TEST_F(MissingModulesTest, aButtonStillWorks)
{
    const auto button = makeView<Button>();
    button->setFrame({0, 0, 100, 100});
    int taps = 0;
    button->setOnTouchUpInside([&] { ++taps; });
    button->setTitle(QStringLiteral("Retry"));
    root()->addSubview(button);
    tap({50, 50});
    EXPECT_EQ(taps, 1);
}

TEST_F(MissingModulesTest, aTextFieldKeepsItsText)
{
    const auto field = makeView<TextField>();
    field->setFrame({0, 0, 100, 100});
    field->setPlaceholder(QStringLiteral("Search"));
    field->setText(QStringLiteral("hello"));
    field->setBackgroundColor(Qt::yellow);
    root()->addSubview(field);
    tap({50, 50});
    EXPECT_FALSE(field->becomeFirstResponder());
    field->resignFirstResponder();
    EXPECT_EQ(field->text(), QStringLiteral("hello"));
    EXPECT_EQ(colorAt({50, 50}), QColor(Qt::yellow));
}

TEST_F(MissingModulesTest, aScrollViewShowsItsContentAndStaysWhereItIs)
{
    const auto scroll = makeView<ScrollView>();
    scroll->setFrame({0, 0, 100, 100});
    scroll->setContentSize({100, 1000});
    scroll->setContentInset({0, 10, 0, 10});
    scroll->setDelaysContentTouches(true);
    scroll->setShowsVerticalScrollIndicator(false);
    scroll->setScrollIndicatorInsets({0, 10, 0, 10});
    const auto row = makeView<Button>();
    row->setFrame({0, 0, 100, 500});
    row->setBackgroundColor(Qt::yellow);
    int taps = 0;
    row->setOnTouchUpInside([&] { ++taps; });
    scroll->contentView()->addSubview(row);
    root()->addSubview(scroll);
    EXPECT_EQ(colorAt({50, 50}), QColor(Qt::yellow));
    EXPECT_EQ(colorAt({50, 5}), QColor(Qt::white));
    EXPECT_EQ(colorAt({50, 150}), QColor(Qt::white));

    for (const bool isAnimated : {false, true}) {
        scroll->setContentOffset({0, 300}, isAnimated);
        kovalin::test::drainMainQueue();
        EXPECT_EQ(scroll->contentOffset(), QPointF(0, -10));
    }
    scroll->forceActiveFocus();
    QTest::keyClick(&window(), Qt::Key_End);
    EXPECT_EQ(scroll->contentOffset(), QPointF(0, -10));
    EXPECT_EQ(scroll->contentSize(), QSizeF(100, 1000));
    tap({50, 50});
    EXPECT_EQ(taps, 1);
    scroll->removeFromSuperview();
}

} // namespace
