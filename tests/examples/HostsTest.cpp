// Each example of a host starts, has its picker drawn, and ends in order.
#include "kovalin-backend/Backend.h"
#include "support/ChildProcess.h"

#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>
#include <string>

using namespace kovalin::test;

namespace {

class Hosts : public testing::TestWithParam<const char*> {
protected:
    Hosts()
    {
        // What a host keeps goes with the test, and nobody's keychain is looked into.
        qputenv("XDG_CACHE_HOME", folder.path().toLocal8Bit());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    }

    [[nodiscard]] static QString program() { return QString::fromLocal8Bit(GetParam()); }

    QTemporaryDir folder;
    const kovalin::backend::Backend server{{.contentFolder = QStringLiteral(KOVALIN_EXAMPLE_CONTENT)}};
};

TEST_P(Hosts, endInOrderOnceThePickerHasBeenDrawn)
{
    ChildProcess host(program(),
                      {QStringLiteral("--backend"), server.baseUrl().toString(), QStringLiteral("--quit-when-shown")});
    EXPECT_EQ(host.readAll(), "");
    EXPECT_EQ(host.waitForExit(), std::optional(0));
}

TEST_P(Hosts, refuseAnOptionThatThereIsNot)
{
    ChildProcess host(program(), {QStringLiteral("--nonesuch")});
    EXPECT_EQ(host.waitForExit(), std::optional(1));
}

INSTANTIATE_TEST_SUITE_P(Examples, Hosts, testing::Values(KOVALIN_HOSTS), [](const auto& given) {
    return QFileInfo(QString::fromLocal8Bit(given.param)).fileName().toStdString();
});

} // namespace
