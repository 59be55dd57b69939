#include "telemetry/KovalinKitEventWriters.h"

#include "kits/core/picoproto.h"
#include "telemetry/WireFields.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using kovalin::test::bytes;
using kovalin::test::varint;
using kovalin::test::wireFields;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct MessageDeleter {
    void operator()(picoproto_ctx_s* message) const { picoproto_free(message); }
};
using Message = std::unique_ptr<picoproto_ctx_s, MessageDeleter>;

Message newMessage()
{
    return Message(picoproto_new("Test"));
}

template <class Write>
struct Writer {
    const char* name;
    Write write;
    std::uint32_t number;
};

#define WRITER(field, number)                                                                                          \
    {                                                                                                                  \
#field, picoproto_write_##field, number                                                                        \
    }

constexpr Writer<void (*)(picoproto_ctx_s*, const char*)> textWriters[] = {
    WRITER(KitEventBase_kit_variant_version, 7),
    WRITER(KovalinKitEventBase_sticker_picker_session_id, 2),
    WRITER(KovalinKitShare_sticker_id, 3),
    WRITER(KovalinKitSearchTerm_value, 2),
    WRITER(KovalinKitStickerPickerOpen_preview_icon_sticker_id, 5),
    WRITER(KovalinKitPreviewIconChange_preview_sticker_id, 2),
};

constexpr Writer<void (*)(picoproto_ctx_s*, std::int32_t)> numberWriters[] = {
    WRITER(KovalinKitShare_share_category, 4),
    WRITER(KovalinKitShare_search_category, 5),
    WRITER(KovalinKitSearchTerm_category, 1),
    WRITER(KovalinKitStickerPickerOpen_sticker_picker_view, 2),
    WRITER(KovalinKitStickerPickerOpen_search_bar_configuration, 3),
    WRITER(KovalinKitStickerPickerOpen_tag_selector_configuration, 4),
    WRITER(KovalinKitPermissionUpdate_status, 2),
};

constexpr Writer<void (*)(picoproto_ctx_s*, picoproto_ctx_s*, int)> messageWriters[] = {
    WRITER(KovalinKitEventBase_kit_event_base, 1),
    WRITER(ServerEventData_kovalin_kit_sticker_picker_open, 30),
    WRITER(ServerEventData_kovalin_kit_sticker_picker_close, 31),
    WRITER(ServerEventData_kovalin_kit_share, 32),
    WRITER(ServerEventData_kovalin_kit_search, 33),
    WRITER(ServerEventData_kovalin_kit_hearth_link_tap, 34),
    WRITER(ServerEventData_kovalin_kit_hearth_link_success, 35),
    WRITER(ServerEventData_kovalin_kit_create_avatar_tap, 36),
    WRITER(ServerEventData_kovalin_kit_permission_update, 39),
    WRITER(ServerEventData_kovalin_kit_sticker_picker_mount, 73),
    WRITER(KovalinKitShare_kovalin_kit_event_base, 1),
    WRITER(KovalinKitSearch_kovalin_kit_event_base, 1),
    WRITER(KovalinKitStickerPickerOpen_kovalin_kit_event_base, 1),
    WRITER(KovalinKitStickerPickerClose_kovalin_kit_event_base, 1),
    WRITER(KovalinKitPermissionUpdate_kovalin_kit_event_base, 1),
    WRITER(KovalinKitPreviewIconChange_kovalin_kit_event_base, 1),
    WRITER(KovalinKitStickerPickerMount_kovalin_kit_event_base, 1),
    WRITER(KovalinKitHearthLinkTap_kovalin_kit_event_base, 1),
    WRITER(KovalinKitHearthLinkSuccess_kovalin_kit_event_base, 1),
    WRITER(KovalinKitCreateAvatarTap_kovalin_kit_event_base, 1),
};

TEST(KovalinKitEventWriters, WriteTextsUnderTheirNumbers)
{
    for (const auto& writer : textWriters) {
        const Message message = newMessage();
        writer.write(message.get(), "text");
        EXPECT_THAT(wireFields(picoproto_bytes(message.get())), ElementsAre(bytes(writer.number, "text")))
            << writer.name;
    }
}

TEST(KovalinKitEventWriters, LeaveAnAbsentTextOutAndAnEmptyOneIn)
{
    for (const auto& writer : textWriters) {
        const Message message = newMessage();
        writer.write(message.get(), nullptr);
        EXPECT_THAT(wireFields(picoproto_bytes(message.get())), IsEmpty()) << writer.name;
        writer.write(message.get(), "");
        EXPECT_THAT(wireFields(picoproto_bytes(message.get())), ElementsAre(bytes(writer.number, ""))) << writer.name;
    }
}

TEST(KovalinKitEventWriters, WriteNumbersUnderTheirsZeroToo)
{
    for (const auto& writer : numberWriters) {
        const Message message = newMessage();
        writer.write(message.get(), 0);
        writer.write(message.get(), std::numeric_limits<std::int32_t>::max());
        EXPECT_THAT(wireFields(picoproto_bytes(message.get())),
                    ElementsAre(varint(writer.number, 0), varint(writer.number, 2'147'483'647)))
            << writer.name;
    }
}

TEST(KovalinKitEventWriters, ExtendNegativeNumbersTo64Bits)
{
    for (const auto& writer : numberWriters) {
        const Message message = newMessage();
        writer.write(message.get(), -1);
        EXPECT_THAT(wireFields(picoproto_bytes(message.get())),
                    ElementsAre(varint(writer.number, std::numeric_limits<std::uint64_t>::max())))
            << writer.name;
        EXPECT_EQ(picoproto_bytes(message.get()).size(), 11U) << writer.name << ": its key and ten bytes";
    }
}

TEST(KovalinKitEventWriters, WriteDurationsOf64Bits)
{
    const Message message = newMessage();
    const auto write = picoproto_write_KovalinKitStickerPickerClose_sticker_picker_session_duration_millis;
    for (const std::int64_t value : {0LL, 1'600'000'000'000LL, -1LL}) {
        write(message.get(), value);
    }
    EXPECT_THAT(
        wireFields(picoproto_bytes(message.get())),
        ElementsAre(varint(2, 0), varint(2, 1'600'000'000'000), varint(2, std::numeric_limits<std::uint64_t>::max())));
}

TEST(KovalinKitEventWriters, EmbedMessagesUnderTheirNumbersAndTakeThem)
{
    for (const auto& writer : messageWriters) {
        const Message message = newMessage();
        Message inner = newMessage();
        picoproto_write_varint_field(inner.get(), 9, 5);
        writer.write(message.get(), inner.release(), 1);
        EXPECT_THAT(wireFields(picoproto_bytes(message.get())), ElementsAre(bytes(writer.number, "\x48\x05")))
            << writer.name;
    }
}

TEST(KovalinKitEventWriters, LeaveAMessageToItsOwnerWithoutTheFlag)
{
    for (const auto& writer : messageWriters) {
        const Message message = newMessage();
        const Message inner = newMessage();
        writer.write(message.get(), inner.get(), 0);
        writer.write(message.get(), inner.get(), 0);
        EXPECT_THAT(wireFields(picoproto_bytes(message.get())),
                    ElementsAre(bytes(writer.number, ""), bytes(writer.number, "")))
            << writer.name;
    }
}

TEST(KovalinKitEventWriters, WriteEachSearchTermAsAFieldOfItsOwn)
{
    const Message message = newMessage();
    picoproto_ctx_s* terms[] = {picoproto_new("Test"), picoproto_new("Test"), picoproto_new("Test")};
    picoproto_write_KovalinKitSearchTerm_category(terms[0], 1);
    picoproto_write_KovalinKitSearchTerm_value(terms[2], "hi");
    picoproto_write_KovalinKitSearch_search_terms(message.get(), terms, 3, 1);
    EXPECT_THAT(wireFields(picoproto_bytes(message.get())),
                ElementsAre(bytes(2, "\x08\x01"), bytes(2, ""), bytes(2, "\x12\x02hi")));
}

TEST(KovalinKitEventWriters, WriteNothingForNoSearchTerms)
{
    const Message message = newMessage();
    picoproto_write_KovalinKitSearch_search_terms(message.get(), nullptr, 0, 1);
    EXPECT_THAT(wireFields(picoproto_bytes(message.get())), IsEmpty());
}

} // namespace
