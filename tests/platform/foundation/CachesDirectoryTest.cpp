#include "platform/foundation/CachesDirectory.h"

#include <QtCore/QStandardPaths>

#include <gtest/gtest.h>

using kovalin::platform::cachesDirectory;
using kovalin::platform::setCachesDirectory;

namespace {

TEST(CachesDirectory, IsTheApplicationsOwnUntilItIsSet)
{
    EXPECT_EQ(cachesDirectory(), QStandardPaths::writableLocation(QStandardPaths::CacheLocation));
}

TEST(CachesDirectory, IsWhatTheHostSet)
{
    setCachesDirectory(QStringLiteral("/somewhere//else/"));
    EXPECT_EQ(cachesDirectory(), QStringLiteral("/somewhere/else"));
    setCachesDirectory(QString());
    EXPECT_EQ(cachesDirectory(), QStandardPaths::writableLocation(QStandardPaths::CacheLocation));
}

} // namespace
