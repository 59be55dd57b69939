#pragma once

#include "picker/bars/KovalinSearchBarView.h"
#include "picker/config/QXSDKKovalinStickerPickerConfigBuilder.h"
#include "platform/ui/Button.h"
#include "platform/ui/TextField.h"
#include "support/ManualAnimationDriver.h"
#include "support/QtPrinting.h"
#include "support/ViewTest.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QStyleHints>
#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace kovalin::test {

class RecordingSearchBarDelegate final : public KovalinSearchBarViewDelegate {
public:
    void searchBarViewDidChangeSearchText(KovalinSearchBarView& searchBar, const QString& text) override
    {
        EXPECT_EQ(text, searchBar.text());
        note("text \"" + text.toStdString() + "\"" + (searchBar.isFirstResponder() ? "" : " without focus"));
    }
    void searchBarViewDidBecomeFirstResponder(KovalinSearchBarView& searchBar) override
    {
        EXPECT_TRUE(searchBar.isFirstResponder());
        note("focus");
    }
    void searchBarViewDidResignFirstResponder(KovalinSearchBarView& searchBar) override
    {
        EXPECT_FALSE(searchBar.isFirstResponder());
        note("no focus");
    }

    std::vector<std::string> told;
    std::function<void()> then;

private:
    void note(const std::string& what)
    {
        told.push_back(what);
        if (then) {
            then();
        }
    }
};

class KovalinSearchBarViewTest : public ViewTest {
protected:
    KovalinSearchBarViewTest()
    {
        QGuiApplication::styleHints()->setCursorFlashTime(0); // no blinking
        make();
    }

    ~KovalinSearchBarViewTest() override
    {
        QGuiApplication::styleHints()->setCursorFlashTime(-1);
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    }

    void make(const QXSDKKovalinStickerPickerThemePtr& theme = QXSDKKovalinStickerPickerTheme::lightTheme())
    {
        if (bar) {
            bar->removeFromSuperview();
        }
        bar = platform::makeView<KovalinSearchBarView>(
            frame, QXSDKKovalinStickerPickerConfigBuilder().withTheme(theme).build());
        bar->setDelegate(delegate);
        root()->addSubview(bar);
        grab();
    }

    void makeRightToLeft()
    {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        make();
    }

    template <class T>
    [[nodiscard]] std::shared_ptr<T> part(qsizetype index) const
    {
        return std::dynamic_pointer_cast<T>(bar->subviews().at(index));
    }
    [[nodiscard]] std::shared_ptr<platform::TextField> field() const { return part<platform::TextField>(0); }
    [[nodiscard]] std::shared_ptr<platform::Button> back() const { return part<platform::Button>(1); }
    [[nodiscard]] std::shared_ptr<platform::Button> clear() const { return part<platform::Button>(2); }
    [[nodiscard]] std::shared_ptr<platform::View> border() const { return part<platform::View>(3); }

    /// Where the back button stands, and the field with it; and which of the buttons show.
    [[nodiscard]] std::string shown() const
    {
        const bool isMirrored = QGuiApplication::layoutDirection() == Qt::RightToLeft;
        const bool isBackShown = back()->frame().x() == (isMirrored ? width - 30 : 0);
        EXPECT_EQ(back()->frame().x(), isMirrored ? (isBackShown ? width - 30 : width) : (isBackShown ? 0 : -30));
        EXPECT_EQ(field()->frame().x(), isBackShown != isMirrored ? 20 : 0);
        EXPECT_EQ(back()->isEnabled(), isBackShown);
        return std::string(isBackShown ? "back" : "") + (clear()->isHidden() ? "" : " clear");
    }

    void settle()
    {
        driver.step(std::chrono::milliseconds(0));
        driver.step(std::chrono::milliseconds(1000));
        drainMainQueue();
        grab();
    }

    void focus() { tap({100, 15}); }
    void type(char character) { QTest::keyClick(&window(), character); }
    void key(Qt::Key key) { QTest::keyClick(&window(), key); }
    static void compose(const QString& preedit, const QString& commit = {})
    {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }
    void tapBack() { tap(back()->frame().center()); }
    void tapClear() { tap(clear()->frame().center()); }

    static constexpr double width = 200;
    static constexpr double height = 40;
    static constexpr QRectF frame{0, 0, width, height};
    ManualAnimationDriver driver;
    std::shared_ptr<RecordingSearchBarDelegate> delegate = std::make_shared<RecordingSearchBarDelegate>();
    std::shared_ptr<KovalinSearchBarView> bar;
    QWindow other;
};

} // namespace kovalin::test
