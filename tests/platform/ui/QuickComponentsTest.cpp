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

TEST_F(QuickComponentsTest, anOwnerWithoutAnItemDoesNothing)
{
    QuickItem nothing;
    EXPECT_EQ(nothing.item(), nullptr);
    EXPECT_FALSE(nothing.set(QuickProperty::Text, QStringLiteral("a text")));
    EXPECT_FALSE(nothing.reset(QuickProperty::HorizontalAlignment));
    EXPECT_FALSE(nothing.get(QuickProperty::Text).isValid());
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
