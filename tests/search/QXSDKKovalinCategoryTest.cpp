#include "search/QXSDKKovalinCategory.h"

#include <gtest/gtest.h>

TEST(QXSDKKovalinCategory, HasANumberForEachOrigin)
{
    EXPECT_EQ(int{QXSDKKovalinCategoryNone}, 0);
    EXPECT_EQ(int{QXSDKKovalinCategoryTypedText}, 1);
    EXPECT_EQ(int{QXSDKKovalinCategorySuggestedTag}, 2);
    EXPECT_EQ(int{QXSDKKovalinCategoryDefaultTag}, 3);
    EXPECT_EQ(int{QXSDKKovalinCategoryHostTerm}, 4);
}

TEST(QXSDKKovalinCategory, MapsToTheNumbersOfAnalytics)
{
    struct Row {
        int category;
        int share;
        int search;
    };
    for (const Row row : {Row{0, 1, 0}, Row{1, 2, 1}, Row{2, 2, 2}, Row{3, 2, 3}, Row{4, 2, 4}, Row{5, 0, 0},
                          Row{-1, 0, 0}, Row{99, 0, 0}}) {
        const auto category = static_cast<QXSDKKovalinCategory>(row.category);
        EXPECT_EQ(QXSDKKovalinCategoryToShareCategory(category), row.share) << row.category;
        EXPECT_EQ(QXSDKKovalinCategoryToSearchCategory(category), row.search) << row.category;
    }
}
