#include "qml/KovalinStickerPicker.h"

#include "platform/foundation/Color.h"
#include "platform/ui/View.h"
#include "qml/KovalinIcon.h"
#include "qml/QmlHost.h"
#include "support/RecordingAnalyticsQueue.h"
#include "support/ScriptedLoginClient.h"
#include "telemetry/WireFields.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <vector>

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::ElementsAre;

namespace {

/// The events of a picker, by their number on the wire.
enum Event : std::uint32_t { Open = 30, Close = 31, Mount = 73 };

class KovalinStickerPickerTest : public QmlHost {
protected:
    KovalinStickerPickerTest() { login->isLinked = false; }

    [[nodiscard]] KovalinStickerPicker* picker() const { return find<KovalinStickerPicker>("picker"); }
    /// The picker that fills the item; null before it is made.
    [[nodiscard]] View* view() const { return qobject_cast<View*>(picker()->childItems().value(0)); }
    void makePicker()
    {
        ASSERT_TRUE(waitFor([this] { return view() != nullptr; }));
    }
    [[nodiscard]] std::vector<std::uint32_t> told() const
    {
        std::vector<std::uint32_t> numbers;
        for (const QByteArray& event : events->events()) {
            numbers.push_back(wireFields(event).at(0).number);
        }
        return numbers;
    }
    [[nodiscard]] bool tells(const std::vector<std::uint32_t>& wanted) const
    {
        return waitFor([&] { return told().size() >= wanted.size(); }) && told() == wanted;
    }

    const InstalledAnalyticsQueue events;
    const InstalledLoginClient login;
};

constexpr auto window = R"(Window {
    width: 300
    height: 400
    visible: true
    property int atCompletion: -1
    Component.onCompleted: atCompletion = stickers.children.length
    KovalinStickerPicker {
        id: stickers
        objectName: "picker"
        anchors.fill: parent
        activeFocusOnTab: false
        theme: KovalinTheme {
            objectName: "theme"
            base: KovalinTheme.Light
        }
    }
    KovalinIcon {
        objectName: "icon"
        width: 32
        height: 32
        picker: stickers
    }
})";

TEST_F(KovalinStickerPickerTest, fillsItsItemAndFollowsItsSize)
{
    load(window);
    EXPECT_EQ(root->property("atCompletion"), 0) << "there is time to set up before it is made";
    makePicker();
    EXPECT_EQ(view()->objectName(), QStringLiteral("qxsdk_kovalin_container"));
    EXPECT_EQ(view()->frame(), QRectF(0, 0, 300, 400));
    root->setProperty("width", 350);
    EXPECT_TRUE(waitFor([this] { return view()->frame() == QRectF(0, 0, 350, 400); }));
    picker()->setProperty("safeAreaBottom", 20.0);
    EXPECT_EQ(view()->safeAreaInsets(), QMarginsF(0, 0, 0, 20));
}

TEST_F(KovalinStickerPickerTest, isOnScreenWhileItAndItsWindowAreShown)
{
    load(window);
    ASSERT_TRUE(tells({Mount, Open}));
    picker()->setVisible(false);
    ASSERT_TRUE(tells({Mount, Open, Close}));
    picker()->setVisible(true);
    ASSERT_TRUE(tells({Mount, Open, Close, Open}));
    root->setProperty("visible", false);
    ASSERT_TRUE(tells({Mount, Open, Close, Open, Close}));
    root->setProperty("visible", true);
    ASSERT_TRUE(tells({Mount, Open, Close, Open, Close, Open}));
    root.reset();
    EXPECT_TRUE(tells({Mount, Open, Close, Open, Close, Open, Close}));
}

TEST_F(KovalinStickerPickerTest, isMadeWithoutBeingShown)
{
    load(R"(Item { KovalinStickerPicker { objectName: "picker"; visible: false } })");
    ASSERT_TRUE(tells({Mount}));
    drainMainQueue();
    EXPECT_THAT(told(), ElementsAre(Mount));
}

TEST_F(KovalinStickerPickerTest, isMadeAnewForAnotherThemeAndForOtherBars)
{
    load(window);
    makePicker();
    EXPECT_TRUE(colorsEqual(view()->backgroundColor(), Qt::white));
    const QPointer<View> first = view();
    find<KovalinTheme>("theme")->setProperty("backgroundColor", QColor(Qt::blue));
    picker()->setProperty("showSearchBar", false);
    ASSERT_TRUE(waitFor([this] { return view() && colorsEqual(view()->backgroundColor(), Qt::blue); }));
    EXPECT_EQ(picker()->childItems().size(), 1);
    EXPECT_TRUE(waitFor([&] { return !first; }));

    const QPointer<View> second = view();
    picker()->setProperty("theme", QVariant::fromValue<KovalinTheme*>(nullptr));
    ASSERT_TRUE(waitFor([&] { return view() && view() != second; }));
    EXPECT_TRUE(colorsEqual(view()->backgroundColor(), Qt::white));
}

TEST_F(KovalinStickerPickerTest, andItsIconGoInAnyOrder)
{
    load(window);
    makePicker();
    const QPointer<View> shown = view();
    auto* const icon = find<KovalinIcon>("icon");
    delete picker();
    EXPECT_EQ(icon->picker(), nullptr);
    EXPECT_TRUE(waitFor([&] { return !shown; }));
    root.reset();
    drainMainQueue();

    load(window);
    makePicker();
    delete find<KovalinIcon>("icon");
    picker()->setProperty("searchTerm", QStringLiteral("hello"));
    drainMainQueue();
    engine.reset(); // and what belongs to it
    drainMainQueue();
}

TEST_F(KovalinStickerPickerTest, mayGoBeforeItsPickerIsMade)
{
    load(window);
    root.reset();
    drainMainQueue();
    EXPECT_THAT(told(), testing::IsEmpty());
}

} // namespace
