#include "platform/ui/QuickComponents.h"

#include "support/ViewTest.h"

#include <QtGui/QFont>

using namespace kovalin::platform;

namespace {

class QuickComponentsTest : public kovalin::test::ViewTest {};

TEST_F(QuickComponentsTest, everyPropertyOfATextCanBeWrittenAndRead)
{
    auto text = QuickComponents::shared().create(QuickType::Text, *root());
    ASSERT_NE(text.item(), nullptr);
    QFont font;
    font.setPixelSize(31);
    const std::vector<std::pair<QuickProperty, QVariant>> values = {
        {QuickProperty::Text, QStringLiteral("a text")},
        {QuickProperty::TextFormat, int(Qt::PlainText)},
        {QuickProperty::Font, font},
        {QuickProperty::Color, QColor(Qt::red)},
        {QuickProperty::HorizontalAlignment, int(Qt::AlignRight)},
        {QuickProperty::VerticalAlignment, int(Qt::AlignVCenter)},
        {QuickProperty::WrapMode, 4},
        {QuickProperty::Elide, int(Qt::ElideRight)},
        {QuickProperty::MaximumLineCount, 3},
    };
    for (const auto& [property, value] : values) {
        EXPECT_TRUE(text.set(property, value)) << int(property);
        const QVariant read = text.get(property);
        if (value.typeId() == QMetaType::Int) {
            EXPECT_EQ(read.toInt(), value.toInt()) << int(property);
        } else if (property == QuickProperty::Font) {
            EXPECT_EQ(read.value<QFont>().pixelSize(), 31);
        } else {
            EXPECT_EQ(read, value) << int(property);
        }
    }
    EXPECT_TRUE(text.reset(QuickProperty::HorizontalAlignment));
    EXPECT_TRUE(text.reset(QuickProperty::MaximumLineCount));
    EXPECT_EQ(text.get(QuickProperty::LineCount).toInt(), 1);
    EXPECT_GT(text.get(QuickProperty::ContentWidth).toDouble(), 0);
    EXPECT_GT(text.get(QuickProperty::ContentHeight).toDouble(), 0);
    EXPECT_FALSE(text.set(QuickProperty::LineCount, 5));
    EXPECT_FALSE(text.set(QuickProperty::Font, QPointF(1, 2)));
}

TEST_F(QuickComponentsTest, everyPropertyOfAFlickableCanBeWrittenAndRead)
{
    auto flickable = QuickComponents::shared().create(QuickType::Flickable, *root());
    ASSERT_NE(flickable.item(), nullptr);
    const std::vector<std::pair<QuickProperty, QVariant>> values = {
        {QuickProperty::ContentWidth, 1000.0}, {QuickProperty::ContentHeight, 2000.0},
        {QuickProperty::ContentX, 10.0},       {QuickProperty::ContentY, 20.0},
        {QuickProperty::LeftMargin, 1.0},      {QuickProperty::TopMargin, 2.0},
        {QuickProperty::RightMargin, 3.0},     {QuickProperty::BottomMargin, 4.0},
        {QuickProperty::Interactive, false},   {QuickProperty::PressDelay, 50},
    };
    for (const auto& [property, value] : values) {
        EXPECT_TRUE(flickable.set(property, value)) << int(property);
        EXPECT_EQ(flickable.get(property), value) << int(property);
    }
    EXPECT_TRUE(flickable.set(QuickProperty::FlickableDirection, 3));
    EXPECT_EQ(flickable.get(QuickProperty::FlickableDirection).toInt(), 3);
    EXPECT_EQ(flickable.get(QuickProperty::Moving), QVariant(false));
    EXPECT_EQ(flickable.get(QuickProperty::Dragging), QVariant(false));
    EXPECT_NE(flickable.get(QuickProperty::ContentItem).value<QQuickItem*>(), nullptr);
    EXPECT_TRUE(flickable.call(QuickMethod::CancelFlick));
}

TEST_F(QuickComponentsTest, aChangeIsToldUntilTheOwnerEnds)
{
    int told = 0;
    QPointer<QQuickItem> item;
    {
        auto flickable = QuickComponents::shared().create(QuickType::Flickable, *root());
        item = flickable.item();
        EXPECT_TRUE(flickable.observe(QuickProperty::ContentX, [&] { ++told; }));
        flickable.set(QuickProperty::ContentX, 10.0);
        flickable.set(QuickProperty::ContentX, 10.0);
        flickable.set(QuickProperty::ContentY, 10.0);
        EXPECT_EQ(told, 1);
    }
    ASSERT_FALSE(item.isNull());
    item->setProperty("contentX", 20.0);
    EXPECT_EQ(told, 1);
}

TEST_F(QuickComponentsTest, everyPropertyOfATextInputCanBeWrittenAndRead)
{
    // The second one, since what is known of the first one's properties must outlive it.
    static_cast<void>(QuickComponents::shared().create(QuickType::TextInput, *root()));
    kovalin::test::drainMainQueue();
    auto input = QuickComponents::shared().create(QuickType::TextInput, *root());
    ASSERT_NE(input.item(), nullptr);
    QFont font;
    font.setPixelSize(31);
    const std::vector<std::pair<QuickProperty, QVariant>> values = {
        {QuickProperty::Text, QStringLiteral("a text")},
        {QuickProperty::Color, QColor(Qt::red)},
        {QuickProperty::HorizontalAlignment, int(Qt::AlignRight)},
        {QuickProperty::VerticalAlignment, int(Qt::AlignVCenter)},
        {QuickProperty::CursorPosition, 3},
        {QuickProperty::SelectionColor, QColor(Qt::blue)},
        {QuickProperty::SelectedTextColor, QColor(Qt::white)},
        {QuickProperty::MaximumLength, 10},
        {QuickProperty::InputMethodHints, QVariant::fromValue<Qt::InputMethodHints>(Qt::ImhNoPredictiveText)},
    };
    EXPECT_TRUE(input.set(QuickProperty::Font, font));
    EXPECT_EQ(input.get(QuickProperty::Font).value<QFont>().pixelSize(), 31);
    for (const auto& [property, value] : values) {
        EXPECT_TRUE(input.set(property, value)) << int(property);
        const bool isNumber = value.typeId() == QMetaType::Int;
        EXPECT_EQ(isNumber ? QVariant(input.get(property).toInt()) : input.get(property), value) << int(property);
    }
    EXPECT_TRUE(input.reset(QuickProperty::HorizontalAlignment));
    EXPECT_EQ(input.get(QuickProperty::DisplayText).toString(), QStringLiteral("a text"));
    EXPECT_EQ(input.get(QuickProperty::PreeditText).toString(), QString());
    EXPECT_GT(input.get(QuickProperty::ContentWidth).toDouble(), 0);
    EXPECT_GT(input.get(QuickProperty::ContentHeight).toDouble(), 0);
    EXPECT_FALSE(input.set(QuickProperty::DisplayText, QStringLiteral("another")));
}

TEST_F(QuickComponentsTest, anOwnerWithoutAnItemDoesNothing)
{
    QuickItem nothing;
    EXPECT_EQ(nothing.item(), nullptr);
    EXPECT_FALSE(nothing.set(QuickProperty::Text, QStringLiteral("a text")));
    EXPECT_FALSE(nothing.reset(QuickProperty::HorizontalAlignment));
    EXPECT_FALSE(nothing.get(QuickProperty::Text).isValid());
    EXPECT_FALSE(nothing.call(QuickMethod::CancelFlick));
    EXPECT_FALSE(nothing.observe(QuickProperty::ContentX, [] {}));
}

TEST_F(QuickComponentsTest, anItemGoesWithItsOwner)
{
    QPointer<QQuickItem> item;
    {
        const auto text = QuickComponents::shared().create(QuickType::Text, *root());
        item = text.item();
        EXPECT_EQ(item->parentItem(), root().get());
    }
    EXPECT_EQ(item->parentItem(), nullptr);
    kovalin::test::drainMainQueue();
    EXPECT_TRUE(item.isNull());
}

TEST_F(QuickComponentsTest, assistiveToolsAreToldRoleAndName)
{
    const auto view = addView({0, 0, 10, 10});
    view->setAccessibilityRole(QAccessible::List);
    view->setAccessibilityLabel(QStringLiteral("Stickers"));
    QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(view.get());
    ASSERT_NE(told, nullptr);
    EXPECT_EQ(told->role(), QAccessible::List);
    EXPECT_EQ(told->text(QAccessible::Name), QStringLiteral("Stickers"));
}

} // namespace
