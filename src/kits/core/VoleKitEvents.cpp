#include "kits/core/VoleKitEvents.h"

#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/picoproto.h"

#include <QtCore/QLocale>
#include <QtCore/QSysInfo>

namespace {

constexpr std::uint32_t kitTypeField = 1;
constexpr std::uint32_t clientIdField = 2;
constexpr std::uint32_t localeField = 3;
constexpr std::uint32_t osNameField = 4;
constexpr std::uint32_t osVersionField = 5;

void writeText(picoproto_ctx_s* message, std::uint32_t field, const QString& text)
{
    picoproto_write_string_field(message, field, text.toUtf8().constData());
}

} // namespace

picoproto_ctx_s* VoleKitEvents::kitEventBaseWithKitType(int kitType)
{
    // Each asking reads a file.
    static const auto& osName = *new const QString(QSysInfo::productType());
    static const auto& osVersion = *new const QString(QSysInfo::productVersion());
    picoproto_ctx_s* const base = picoproto_new("KitEventBase");
    picoproto_write_varint_field(base, kitTypeField, static_cast<std::uint64_t>(kitType));
    writeText(base, clientIdField, QXSDKClientSetup::shared()->clientId);
    writeText(base, localeField, QLocale::system().bcp47Name());
    writeText(base, osNameField, osName);
    writeText(base, osVersionField, osVersion);
    return base;
}

QXSDKServerEvent VoleKitEvents::serverEventWithServerEventData(picoproto_ctx_s* serverEventData)
{
    QXSDKServerEvent event{.serverEventData = QByteArray::fromStdString(picoproto_bytes(serverEventData))};
    picoproto_free(serverEventData);
    return event;
}
