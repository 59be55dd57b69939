#include "search/QXSDKKovalinCategory.h"

#include <algorithm>
#include <array>

namespace {

struct CategoryNumbers {
    QXSDKKovalinCategory category;
    int share;
    int search;
};

constexpr std::array categoryNumbers{
    CategoryNumbers{QXSDKKovalinCategoryNone, 1, 0},         CategoryNumbers{QXSDKKovalinCategoryTypedText, 2, 1},
    CategoryNumbers{QXSDKKovalinCategorySuggestedTag, 2, 2}, CategoryNumbers{QXSDKKovalinCategoryDefaultTag, 2, 3},
    CategoryNumbers{QXSDKKovalinCategoryHostTerm, 2, 4},
};

CategoryNumbers numbersFor(QXSDKKovalinCategory category)
{
    const auto* const row = std::ranges::find(categoryNumbers, category, &CategoryNumbers::category);
    return row == categoryNumbers.end() ? CategoryNumbers{category, 0, 0} : *row;
}

} // namespace

int QXSDKKovalinCategoryToShareCategory(QXSDKKovalinCategory category)
{
    return numbersFor(category).share;
}

int QXSDKKovalinCategoryToSearchCategory(QXSDKKovalinCategory category)
{
    return numbersFor(category).search;
}
