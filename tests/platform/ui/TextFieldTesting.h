#pragma once

#include "platform/ui/TextField.h"
#include "support/QtPrinting.h"
#include "support/ViewTest.h"

#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QStyleHints>
#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kovalin::test {

/// A field on a white root that says what it tells.
class TextFieldTest : public ViewTest {
protected:
    TextFieldTest()
    {
        // No blinking, but where a test asks for it.
        QGuiApplication::styleHints()->setCursorFlashTime(0);
        QFont font;
        font.setPixelSize(16);
        field->setFont(font);
        field->setFrame(frame);
        field->setPlaceholder(QStringLiteral("Search"));
        field->setPlaceholderColor(Qt::red);
        field->setTintColor(Qt::blue);
        field->setOnEditingChanged([this] { told.push_back("edited " + field->text().toStdString()); });
        field->setOnBeginEditing([this] { told.emplace_back("begin"); });
        field->setOnEndEditing([this] { told.emplace_back("end"); });
        field->setOnReturn([this] { told.emplace_back("return"); });
        root()->addSubview(field);
        grab();
    }

    ~TextFieldTest() override
    {
        field->setOnEditingChanged({});
        field->setOnEndEditing({});
        QGuiApplication::styleHints()->setCursorFlashTime(-1);
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    }

    /// What has the keyboard, as input methods know it.
    static QObject* input() { return QGuiApplication::focusObject(); }

    static void compose(const QString& preedit, const QString& commit = {})
    {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QCoreApplication::sendEvent(input(), &event);
    }

    void type(char character) { QTest::keyClick(&window(), character); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&window(), key, modifiers); }

    void paste(const QString& text)
    {
        QGuiApplication::clipboard()->setText(text);
        key(Qt::Key_V, Qt::ControlModifier);
    }

    void deactivateWindow()
    {
        other.setGeometry(0, 0, 50, 50);
        other.show();
        other.requestActivate();
        EXPECT_TRUE(waitFor([&] { return other.isActive() && !window().isActive(); }));
    }

    void activateWindow()
    {
        window().requestActivate();
        EXPECT_TRUE(waitFor([&] { return window().isActive(); }));
    }

    /// The columns, in points, between which there is something of the colour; absent without any.
    std::optional<std::pair<double, double>> columnsOf(const std::function<bool(const QColor&)>& isWanted)
    {
        const QImage picture = grab();
        std::optional<std::pair<double, double>> columns;
        for (int x = 0; x < picture.width(); ++x) {
            for (int y = 0; y < picture.height(); ++y) {
                if (isWanted(picture.pixelColor(x, y))) {
                    columns = {columns ? columns->first : x / ratio(), (x + 1) / ratio()};
                }
            }
        }
        return columns;
    }

    std::optional<std::pair<double, double>> ink()
    {
        return columnsOf([](const QColor& color) { return color.lightness() < 100 && color.saturation() < 50; });
    }
    std::optional<std::pair<double, double>> caret()
    {
        return columnsOf([](const QColor& color) { return color == QColor(Qt::blue); });
    }
    std::optional<std::pair<double, double>> placeholder()
    {
        return columnsOf([](const QColor& color) { return color.red() > 200 && color.green() < 80; });
    }

    static constexpr QRectF frame{20, 20, 150, 40};
    std::vector<std::string> told;
    std::shared_ptr<platform::TextField> field = platform::makeView<platform::TextField>();
    QWindow other;
};

} // namespace kovalin::test
