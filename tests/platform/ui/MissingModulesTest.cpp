// In a program of its own, whose configuration tells of no QML modules.

#include "platform/ui/Button.h"
#include "platform/ui/Label.h"
#include "platform/ui/TextField.h"
#include "support/ViewTest.h"

#include <QtCore/QStringList>

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

} // namespace
