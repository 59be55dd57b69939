#pragma once

#include "platform/ui/Animation.h"
#include "platform/ui/ScrollView.h"
#include "support/ManualAnimationDriver.h"
#include "support/ViewTest.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QWheelEvent>

#include <chrono>
#include <functional>
#include <vector>

namespace kovalin::test {

/// Keeps what it is told.
class RecordingScrollDelegate : public platform::ScrollViewDelegate {
public:
    void scrollViewDidScroll(platform::ScrollView& scrollView) override
    {
        offsets.push_back(scrollView.contentOffset());
        if (const auto handler = onScroll) {
            handler();
        }
    }

    std::vector<QPointF> offsets;
    std::function<void()> onScroll;
};

/// 100 × 100 points at (50, 50), with content of 100 × 1000.
class ScrollViewTest : public ViewTest {
protected:
    static constexpr double side = 100;
    static constexpr double end = 900;
    static constexpr QPointF middle{100, 100};

    ScrollViewTest()
    {
        scroll->setFrame({50, 50, side, side});
        scroll->setContentSize({100, 1000});
        scroll->setScrollDelegate(delegate);
        root()->addSubview(scroll);
        grab();
    }

    ~ScrollViewTest() override
    {
        platform::setReducedMotion(false);
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    }

    /// Lets everything that moves come to rest.
    void rest()
    {
        for (int step = 0; step < 1000 && (step < 2 || driver.isRunning()); ++step) {
            driver.step(std::chrono::milliseconds(20));
        }
        EXPECT_FALSE(driver.isRunning());
    }

    void waitForFrame()
    {
        bool isSwapped = false;
        const auto connection = QObject::connect(&window(), &QQuickWindow::frameSwapped, [&] { isSwapped = true; });
        window().update();
        EXPECT_TRUE(waitFor([&] { return isSwapped; }));
        QObject::disconnect(connection);
    }

    /// Moves the mouse in small steps, as from a hand.
    void dragFrom(const QPointF& from, const QPointF& to)
    {
        constexpr int steps = 10;
        press(from);
        for (int step = 1; step <= steps; ++step) {
            move(from + (to - from) * step / steps);
        }
    }

    void wheel(const QPoint& pixels, const QPoint& angle, Qt::ScrollPhase phase, Qt::MouseEventSource source)
    {
        _time += 16;
        QWheelEvent event(middle, window().mapToGlobal(middle), pixels, angle, {}, {}, phase, false, source);
        event.setTimestamp(_time);
        QCoreApplication::sendEvent(&window(), &event);
    }

    /// The bars that are on screen.
    [[nodiscard]] QList<std::shared_ptr<platform::View>> indicators() const
    {
        QList<std::shared_ptr<platform::View>> bars;
        for (const auto& subview : scroll->subviews()) {
            if (subview != scroll->contentView() && !subview->isHidden() && subview->opacity() > 0) {
                bars.append(subview);
            }
        }
        return bars;
    }

    [[nodiscard]] double offset() const { return scroll->contentOffset().y(); }

    ManualAnimationDriver driver;
    std::shared_ptr<RecordingScrollDelegate> delegate = std::make_shared<RecordingScrollDelegate>();
    std::shared_ptr<platform::ScrollView> scroll = platform::makeView<platform::ScrollView>();

private:
    quint64 _time = 1000;
};

} // namespace kovalin::test
