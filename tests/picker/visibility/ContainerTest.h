#pragma once

#include "picker/visibility/HostItems.h"
#include "picker/visibility/QXSDKKovalinStickerPickerContainerView.h"
#include "support/ViewTest.h"

#include <QtCore/QList>

#include <functional>
#include <memory>

namespace kovalin::test {

class RecordingContainerDelegate final : public QXSDKKovalinStickerPickerContainerViewDelegate {
public:
    void containerViewVisibilityDidChange(bool isShown) override
    {
        told.append(isShown);
        if (const auto act = then) {
            act();
        }
    }

    QList<bool> told;
    std::function<void()> then;
};

/// A container of 100 × 100 points in two items of a host's, one in the other, which fill a window of 200 × 200 points.
class ContainerTest : public ViewTest {
protected:
    using Container = QXSDKKovalinStickerPickerContainerView;

    ContainerTest()
    {
        container->setDelegate(delegate);
        container->setFrame({0, 0, 100, 100});
    }

    /// As a host does.
    void embed()
    {
        container->setParentItem(inner.get());
        settle();
    }
    /// What is told in later turns is told by now.
    static void settle()
    {
        for (int turn = 0; turn < 3; ++turn) {
            drainMainQueue();
        }
    }
    void letGo() { container.reset(); }

    std::unique_ptr<HostItem> outer = std::make_unique<HostItem>(window().contentItem());
    std::unique_ptr<HostItem> inner = std::make_unique<HostItem>(outer.get());
    std::shared_ptr<RecordingContainerDelegate> delegate = std::make_shared<RecordingContainerDelegate>();
    std::shared_ptr<Container> container = platform::makeView<Container>();
};

} // namespace kovalin::test
