#pragma once

#include "picker/content/ContentViewParts.h"
#include "picker/controller/PickerTest.h"
#include "picker/controller/QXSDKKovalinStickerPickerViewController.h"
#include "picker/grid/QXSDKKovalinStickerCollectionViewCell.h"
#include "picker/visibility/HostItems.h"
#include "support/ManualAnimationDriver.h"
#include "telemetry/QXSDKKovalinViewControllerLogger.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QStyleHints>
#include <QtTest/QTest>

#include <chrono>

namespace kovalin::test {

class RecordingPickerDelegate final : public QXSDKKovalinStickerPickerViewControllerDelegate {
public:
    using Controller = QXSDKKovalinStickerPickerViewController;

    struct Selected {
        QString url;
        QImage image;
    };

    void kovalinStickerPickerViewControllerDidSelectKovalinWithURL(Controller& controller, const QString& url,
                                                                   const QImage& image) override
    {
        selected.push_back({url, image});
        note(controller, "selected");
    }
    void kovalinStickerPickerViewControllerDidSelectSearchTag(Controller& controller) override
    {
        note(controller, "tag");
    }
    void kovalinStickerPickerViewControllerSearchFieldFocusDidChangeWithFocus(Controller& controller,
                                                                              bool hasFocus) override
    {
        note(controller, hasFocus ? "focus" : "no focus");
    }

    std::vector<std::string> told;
    std::vector<const Controller*> tellers;
    std::vector<Selected> selected;
    std::function<void()> then;

private:
    void note(const Controller& controller, const char* what)
    {
        told.emplace_back(what);
        tellers.push_back(&controller);
        if (const auto act = then) {
            act();
        }
    }
};

/// A controller over content of a test's own, and an item of a host's that fills the window. Animations stand still.
class ControllerTest : public PickerTest {
protected:
    using Controller = QXSDKKovalinStickerPickerViewController;
    using Content = QXSDKKovalinStickerPickerContentView;

    ControllerTest()
    {
        QGuiApplication::styleHints()->setCursorFlashTime(0); // no blinking
        pictures.script("/red", Qt::red);
        controller->setDelegate(delegate);
    }
    ~ControllerTest() override
    {
        QGuiApplication::styleHints()->setCursorFlashTime(-1);
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    }

    /// In place of the former one.
    void makePicker(const QXSDKKovalinStickerPickerConfigPtr& config = nullptr)
    {
        picker = PickerObjects::make(config, sources());
        controller = picker.makeController();
        controller->setDelegate(delegate);
    }
    /// As a host does.
    void embed()
    {
        controller->view()->setParentItem(host.get());
        controller->view()->setSize({width, height});
        settle();
        grab();
    }
    void open()
    {
        embed();
        controller->viewWillAppear();
    }
    /// What the data provider knows, and tells.
    void loadContent(const KovalinStickerList& popular)
    {
        auto first = std::make_shared<KovalinPack>();
        first->setPackId(QStringLiteral("popular"));
        first->setName(QStringLiteral("Popular"));
        first->setVisible(true);
        first->setStickers(popular);
        const KovalinPackList packs{first, namedPack(QStringLiteral("moods"), QStringLiteral("Moods"))};
        provider->setPacks(packs);
        picker.viewManager->contentDidLoadWithPacks(packs);
        settleViews();
    }
    void loadContent() { loadContent({sticker(QStringLiteral("a")), sticker(QStringLiteral("b"))}); }
    void openWithContent()
    {
        open();
        loadContent();
    }
    void settleViews()
    {
        settle();
        driver.step(std::chrono::milliseconds(0));
        driver.step(std::chrono::milliseconds(1000));
        settle();
        grab();
    }

    /// Only the controller has its objects from here on.
    void keepOnlyTheController()
    {
        goneManager = picker.viewManager;
        goneSessions = picker.sessionManager;
        goneVisibility = picker.visibilityState;
        goneFriends = picker.friendState;
        picker = {};
    }
    void expectGone()
    {
        settle();
        EXPECT_TRUE(goneManager.expired());
        EXPECT_TRUE(goneSessions.expired());
        EXPECT_TRUE(goneVisibility.expired());
        EXPECT_TRUE(goneFriends.expired());
    }

    // The parts

    [[nodiscard]] Container& container() const { return dynamic_cast<Container&>(*controller->view()); }
    [[nodiscard]] std::shared_ptr<Content> content() const
    {
        for (const auto& view : container().subviews()) {
            if (auto found = std::dynamic_pointer_cast<Content>(view)) {
                return found;
            }
        }
        return nullptr;
    }
    [[nodiscard]] std::shared_ptr<platform::View> currentView() const { return picker.viewManager->currentViewItem(); }

    // What a user does

    void focusField() { tap({160, 20}); }
    void key(Qt::Key key) { QTest::keyClick(&window(), key); }
    void tapTile(qsizetype item) { tapTile(*gridOf(*content()), item); }
    /// Of a grid that fills the picker, once it has its picture.
    void tapTile(const platform::CollectionView& grid, qsizetype item)
    {
        settleViews();
        ASSERT_TRUE(waitFor([&] {
            const auto cell =
                std::dynamic_pointer_cast<QXSDKKovalinStickerCollectionViewCell>(grid.cellForItemAtIndexPath(item));
            return cell && cell->isLoaded();
        }));
        tap(grid.frameOfItem(item).center() - grid.contentOffset());
    }
    void tapTag(qsizetype item)
    {
        settleViews();
        const auto strip = stripOf(*content());
        tap(middleOfPill(*strip, item) + strip->frame().topLeft());
        settleViews();
    }

    ManualAnimationDriver driver;
    std::unique_ptr<HostItem> host = std::make_unique<HostItem>(window().contentItem(), QRectF(0, 0, width, height));
    std::shared_ptr<RecordingPickerDelegate> delegate = std::make_shared<RecordingPickerDelegate>();
    PickerObjects picker = PickerObjects::make(nullptr, sources());
    std::shared_ptr<Controller> controller = picker.makeController();
    std::weak_ptr<QXSDKKovalinViewManager> goneManager;
    std::weak_ptr<QXSDKKovalinStickerPickerSessionManager> goneSessions;
    std::weak_ptr<QXSDKKovalinViewVisibilityState> goneVisibility;
    std::weak_ptr<QXSDKKovalinFriendState> goneFriends;
};

} // namespace kovalin::test
