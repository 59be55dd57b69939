#include "picker/config/QXSDKKovalinViewType.h"

#include "picker/config/QXSDKKovalinViewProtocol.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

class SomeView final : public QXSDKKovalinViewProtocol {
public:
    explicit SomeView(QXSDKKovalinViewType type)
        : _type(type)
    {
    }

    [[nodiscard]] QXSDKKovalinViewType type() const override { return _type; }

private:
    const QXSDKKovalinViewType _type;
};

TEST(ViewType, HasTheNumbersOfAnalytics)
{
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<QXSDKKovalinViewType>, qint32>));
    EXPECT_EQ(QXSDKKovalinViewTypeContent, 1);
    EXPECT_EQ(QXSDKKovalinViewTypeCreateAvatar, 2);
    EXPECT_EQ(QXSDKKovalinViewTypeLogin, 3);
    EXPECT_EQ(QXSDKKovalinViewTypeNoPermission, 4);
    EXPECT_EQ(QXSDKKovalinViewTypeError, 5);
}

TEST(ViewProtocol, ReadsZeroWhereThereIsNoView)
{
    EXPECT_EQ(QXSDKKovalinViewProtocol::typeOf(nullptr), 0);
}

TEST(ViewProtocol, ReadsTheTypeOfAView)
{
    const SomeView view(QXSDKKovalinViewTypeNoPermission);
    EXPECT_EQ(view.type(), QXSDKKovalinViewTypeNoPermission);
    EXPECT_EQ(QXSDKKovalinViewProtocol::typeOf(&view), QXSDKKovalinViewTypeNoPermission);
}

} // namespace
