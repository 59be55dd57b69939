#include "search/QXSDKKovalinSearchResultType.h"

#include "StickerBuilding.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace kovalin::test;

namespace {

constexpr auto solovalin = QXSDKKovalinSearchResultTypeSolovalin;
constexpr auto friendvalin = QXSDKKovalinSearchResultTypeFriendvalin;

struct Row {
    QXSDKKovalinSearchResultTypes types;
    bool hasAll;
    bool hasFriendvalin;
    bool keepsSolo;
    bool keepsPair;
};

} // namespace

TEST(QXSDKKovalinSearchResultType, NumbersAreTheContracts)
{
    EXPECT_EQ(int{solovalin}, 0);
    EXPECT_EQ(int{friendvalin}, 1);
}

TEST(QXSDKKovalinSearchResultType, FiltersByMembershipAlone)
{
    const auto unknown = static_cast<QXSDKKovalinSearchResultType>(7);
    const Row rows[] = {
        {{solovalin, friendvalin}, true, true, true, true},
        {{friendvalin, unknown, solovalin, solovalin}, true, true, true, true},
        {{solovalin}, false, false, true, false},
        {{solovalin, solovalin}, false, false, true, false},
        {{friendvalin}, false, true, false, true},
        {{}, false, false, false, false},
        {{unknown}, false, false, false, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        EXPECT_EQ(QXSDKKovalinSearchResultTypeHasAll(row.types), row.hasAll);
        EXPECT_EQ(QXSDKKovalinSearchResultTypeHasFriendvalin(row.types), row.hasFriendvalin);
        const auto isWanted = QXSDKKovalinSearchResultTypeToPredicate(row.types);
        EXPECT_EQ(isWanted(*solo(u"1"_s)), row.keepsSolo);
        EXPECT_EQ(isWanted(*pair(u"1"_s)), row.keepsPair);
    }
}
