#include "kits/core/VoleKitEvents.h"

#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/picoproto.h"
#include "support/DecodedMessage.h"

#include <QtCore/QLocale>
#include <QtCore/QSysInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace kovalin::test {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Pair;

class VoleKitEventsTest : public testing::Test {
protected:
    ~VoleKitEventsTest() override { QXSDKClientSetup::setShared({}); }

    static QByteArray baseBytes(int kitType)
    {
        picoproto_ctx_s* const base = VoleKitEvents::kitEventBaseWithKitType(kitType);
        const QByteArray bytes = QByteArray::fromStdString(picoproto_bytes(base));
        picoproto_free(base);
        return bytes;
    }
    static DecodedMessage base(int kitType)
    {
        const auto read = decodedEvents(QStringLiteral("KitEventBase"), baseBytes(kitType));
        EXPECT_TRUE(read.has_value());
        return read.value_or(DecodedMessage());
    }
};

TEST_F(VoleKitEventsTest, TellOfTheHostAndTheSystem)
{
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("my-client")});
    const DecodedMessage read = base(1);
    EXPECT_EQ(read.value("kit_type"), "1");
    EXPECT_EQ(read.value("client_id"), "my-client");
    EXPECT_EQ(read.value("locale"), QLocale::system().bcp47Name().toStdString());
    EXPECT_EQ(read.value("os_name"), QSysInfo::productType().toStdString());
    EXPECT_EQ(read.value("os_version"), QSysInfo::productVersion().toStdString());
    EXPECT_FALSE(read.value("kit_variant_version").has_value()) << "which is the kit's to write";
    EXPECT_EQ(read.values.size(), 5U);
    EXPECT_THAT(read.messages, IsEmpty());
}

TEST_F(VoleKitEventsTest, TakeTheClientOfTheSetupOfNow)
{
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("first")});
    EXPECT_EQ(base(1).value("client_id"), "first");
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("sec\u00f6nd")});
    EXPECT_EQ(base(1).value("client_id"), R"(sec\303\266nd)");
}

TEST_F(VoleKitEventsTest, HaveAnEmptyClientBeforeTheSetup)
{
    QXSDKClientSetup::setShared({});
    EXPECT_FALSE(base(1).value("client_id").has_value());        // an empty text isn't shown …
    EXPECT_TRUE(baseBytes(1).contains(QByteArray("\x12\0", 2))); // … but stands there
}

TEST_F(VoleKitEventsTest, WriteTheKitTypeAsItIsGiven)
{
    EXPECT_EQ(base(7).value("kit_type"), "7");
    EXPECT_EQ(base(-1).value("kit_type"), "-1");
}

TEST_F(VoleKitEventsTest, AreANewMessageEachTime)
{
    picoproto_ctx_s* const first = VoleKitEvents::kitEventBaseWithKitType(1);
    picoproto_ctx_s* const second = VoleKitEvents::kitEventBaseWithKitType(1);
    EXPECT_NE(first, second);
    picoproto_write_string_field(first, 7, "1.2");
    const auto read = decodedEvents(QStringLiteral("KitEventBase"), QByteArray::fromStdString(picoproto_bytes(first)));
    ASSERT_TRUE(read.has_value());
    EXPECT_THAT(read->values, Contains(Pair("kit_variant_version", "\"1.2\"")));
    EXPECT_NE(picoproto_bytes(first), picoproto_bytes(second));
    picoproto_free(first);
    picoproto_free(second);
}

// That the message is freed is seen by the address sanitizer.
TEST_F(VoleKitEventsTest, WrapAnEventAndTakeItsMessage)
{
    picoproto_ctx_s* const data = picoproto_new("ServerEventData");
    picoproto_write_string_field(data, 2, "a text with a zero behind it");
    picoproto_write_varint_field(data, 3, 0);
    const std::string bytes = picoproto_bytes(data);
    EXPECT_EQ(VoleKitEvents::serverEventWithServerEventData(data).serverEventData.toStdString(), bytes);
}

TEST_F(VoleKitEventsTest, WrapAnEmptyEvent)
{
    EXPECT_EQ(VoleKitEvents::serverEventWithServerEventData(picoproto_new("ServerEventData")).serverEventData.size(),
              0);
}

} // namespace
} // namespace kovalin::test
