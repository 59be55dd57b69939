#include "platform/foundation/PlatformException.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using kovalin::platform::PlatformException;

TEST(PlatformException, CarriesItsNameAndReason)
{
    const PlatformException exception(QStringLiteral("RangeException"), QStringLiteral("index 3 beyond 2"));
    EXPECT_EQ(exception.name(), QStringLiteral("RangeException"));
    EXPECT_EQ(exception.reason(), QStringLiteral("index 3 beyond 2"));
}

TEST(PlatformException, TellsBothInUtf8WhenCaughtAsAStandardException)
{
    try {
        throw PlatformException(QStringLiteral("Größe"), QStringLiteral("%1 \U0001F600"));
    } catch (const std::exception& exception) {
        EXPECT_STREQ(exception.what(), "Gr\xC3\xB6\xC3\x9F"
                                       "e: %1 \xF0\x9F\x98\x80");
        return;
    }
    FAIL() << "not a std::exception";
}

TEST(PlatformException, KeepsItsTextWhenCopied)
{
    auto original = std::make_unique<PlatformException>(QStringLiteral("A"), QStringLiteral("b"));
    const PlatformException copy = *original;
    original.reset();
    EXPECT_STREQ(copy.what(), "A: b");
    static_assert(std::is_nothrow_copy_constructible_v<PlatformException>);
}

TEST(PlatformException, MayHaveNoReason)
{
    EXPECT_STREQ(PlatformException(QStringLiteral("A"), QString()).what(), "A: ");
}

} // namespace
