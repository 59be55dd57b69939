#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "telemetry/PickerEvents.h"
#include "telemetry/QXSDKKovalinAnalyticsEventLogger.h"
#include "telemetry/WireFields.h"

#include <gmock/gmock.h>

using namespace kovalin::test;
using namespace std::chrono_literals;
using namespace std::string_literals;
using testing::ElementsAre;

namespace {

/// The key of a field as it stands on the wire, and its length and bytes, of which there are fewer than 16384.
std::string field(const std::string& key, const std::string& value)
{
    std::string bytes = key;
    if (value.size() >= 128) {
        bytes += static_cast<char>(0x80U | (value.size() & 0x7fU));
        bytes += static_cast<char>(value.size() >> 7U);
    } else {
        bytes += static_cast<char>(value.size());
    }
    return bytes + value;
}

/// Events byte by byte.
class AnalyticsEventBytes : public PickerEvents {
protected:
    /// The first field of each event.
    [[nodiscard]] std::string base() const
    {
        const std::string kit = "\x08\x01"s + field("\x12", clientId().toStdString()) +
                                field("\x1a", QLocale::system().bcp47Name().toStdString()) +
                                field("\x22", QSysInfo::productType().toStdString()) +
                                field("\x2a", QSysInfo::productVersion().toStdString()) +
                                field("\x3a", QXSDKKovalinKitVersionString);
        return field("\x0a", field("\x0a", kit) + field("\x12", sessions->sessionId()->toStdString()));
    }
    [[nodiscard]] std::string lastEvent() const { return queue->events().back().toStdString(); }

    QXSDKKovalinAnalyticsEventLogger logger{sessions};
    QXSDKKovalinStickerPickerConfig config;
};

TEST_F(AnalyticsEventBytes, OfAnOpening)
{
    span(1s);
    config.setShowSearchPills(false);
    logger.logStickerPickerOpen(3, stickerWithComicId(QStringLiteral("s5")), config);
    EXPECT_EQ(lastEvent(), field("\xf2\x01", base() + "\x10\x03\x18\x00\x20\x01"s + field("\x2a", "s5")));
}

TEST_F(AnalyticsEventBytes, OfAClosing)
{
    span(300ms);
    logger.logStickerPickerClose();
    EXPECT_EQ(lastEvent(), field("\xfa\x01", base() + "\x10\xac\x02"s));
}

TEST_F(AnalyticsEventBytes, OfAShare)
{
    span(1s);
    logger.logShare(*stickerWithComicId(QStringLiteral("s5")), QXSDKKovalinCategoryHostTerm);
    EXPECT_EQ(lastEvent(), field("\x82\x02", base() + field("\x1a", "s5") + "\x20\x02\x28\x04"s));
}

TEST_F(AnalyticsEventBytes, OfASearch)
{
    span(1s);
    logger.logSearch({term(QStringLiteral("hi"), QXSDKKovalinCategoryTypedText), term(QString(), {})});
    EXPECT_EQ(lastEvent(), field("\x8a\x02", base() + field("\x12", "\x08\x01"s + field("\x12", "hi")) +
                                                 field("\x12", "\x08\x00"s + field("\x12", ""))));
}

TEST_F(AnalyticsEventBytes, OfEventsOfABaseAlone)
{
    span(1s);
    logger.logHearthLinkTap();
    EXPECT_EQ(lastEvent(), field("\x92\x02", base()));
    logger.logHearthLinkSuccess();
    EXPECT_EQ(lastEvent(), field("\x9a\x02", base()));
    logger.logCreateAvatarTap();
    EXPECT_EQ(lastEvent(), field("\xa2\x02", base()));
    logger.logStickerPickerMount();
    EXPECT_EQ(lastEvent(), field("\xca\x04", base()));
}

TEST_F(AnalyticsEventBytes, OfAPermissionUpdate)
{
    span(1s);
    logger.logPermissionUpdateWithStatus(2);
    EXPECT_EQ(lastEvent(), field("\xba\x02", base() + "\x10\x02"s));
}

TEST_F(AnalyticsEventBytes, OfAnIconsChange)
{
    logger.logPreviewIconChange(stickerWithComicId(QStringLiteral("s5")));
    EXPECT_EQ(lastEvent(), field("\x12", "s5"));
}

struct Text {
    QString text;
    std::string onTheWire;
};

TEST_F(AnalyticsEventBytes, OfTextsOfAllKinds)
{
    const QString longText(5000, u'x');
    const QString half(QChar(0xD83D)); // of a pair
    const Text texts[] = {
        {QString(), ""},
        {QStringLiteral(u"\U0001F600 ok"), "\xf0\x9f\x98\x80 ok"},                         // outside of the first plane
        {QStringLiteral(u"\u05E9\u05DC\u05D5\u05DD"), "\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d"}, // right to left
        {QStringLiteral("say \"hi\"\\\n\t'\x01\x7f"), "say \"hi\"\\\n\t'\x01\x7f"},
        {QStringLiteral("cut") + QChar(u'\0') + QStringLiteral("off"), "cut"}, // at the first zero
        {QString(QChar(u'\0')), ""},
        {half, half.toUtf8().toStdString()}, // whatever stands for what is no character
        {longText, longText.toStdString()},
    };
    QXSDKKovalinSearchTermList terms;
    DecodedFields decoded;
    for (const auto& [text, onTheWire] : texts) {
        const KovalinStickerPtr sticker = stickerWithComicId(text);
        logger.logPreviewIconChange(sticker);
        EXPECT_EQ(lastEvent(), field("\x12", onTheWire));
        logger.logShare(*sticker, QXSDKKovalinCategoryNone);
        EXPECT_EQ(fieldsWithin(queue->events().back()).at(1), bytes(3, onTheWire));
        logger.logStickerPickerOpen(1, sticker, config);
        EXPECT_EQ(fieldsWithin(queue->events().back()).at(4), bytes(5, onTheWire));
        terms.append(term(text, QXSDKKovalinCategoryTypedText));
        decoded.emplace_back("search_terms.category", "1");
        if (!onTheWire.empty()) {
            decoded.emplace_back("search_terms.value", onTheWire);
        }
    }
    logger.logSearch(terms);
    EXPECT_EQ(decodedEvent(queue->events().back()), expected("kovalin_kit_search", decoded));
}

} // namespace
