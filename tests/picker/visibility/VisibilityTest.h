#pragma once

#include "picker/controller/PickerTest.h"
#include "telemetry/QXSDKKovalinViewVisibilityStateDelegate.h"

namespace kovalin::test {

/// Told of sessions, or of the first view that is seen.
class RecordingVisibility final : public QXSDKKovalinStickerPickerSessionManagerObserver,
                                  public QXSDKKovalinViewVisibilityStateDelegate {
public:
    struct FirstView {
        qint32 type;
        KovalinStickerPtr sticker;
        const QXSDKKovalinStickerPickerConfig* config;
    };

    void sessionDidStart() override { note("start"); }
    void sessionDidEnd() override { note("end"); }
    void firstViewBecameVisible(qint32 viewType, const KovalinStickerPtr& previewIconSticker,
                                const QXSDKKovalinStickerPickerConfig& config) override
    {
        firstViews.push_back({viewType, previewIconSticker, &config});
        note("view " + std::to_string(viewType));
    }

    std::vector<std::string> told;
    std::vector<FirstView> firstViews;
    std::function<void()> then;

private:
    void note(const std::string& what)
    {
        told.push_back(what);
        if (const auto act = then) {
            act();
        }
    }
};

/// A visibility state with its manager, sessions and container, which is in no window yet.
class VisibilityTest : public PickerTest {
protected:
    VisibilityTest()
    {
        picker.sessionManager->registerWeakObserver(recorder);
        picker.visibilityState->setDelegate(recorder);
        picker.visibilityState->setContainerView(container);
        container->setFrame({0, 0, 100, 100});
    }

    void show() { root()->addSubview(container); }
    void hide() { container->removeFromSuperview(); }
    void appear() { picker.visibilityState->viewWillAppear(); }
    void disappear() { picker.visibilityState->viewWillDisappear(); }
    [[nodiscard]] bool isSessionActive() const { return picker.sessionManager->isActive(); }

    PickerObjects picker = PickerObjects::make(nullptr, sources());
    std::shared_ptr<Container> container = platform::makeView<Container>();
    std::shared_ptr<RecordingVisibility> recorder = std::make_shared<RecordingVisibility>();
};

} // namespace kovalin::test
