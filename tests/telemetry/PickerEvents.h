#pragma once

#include "QXSDKKovalinKit/Version.h"
#include "kits/core/QXSDKClientSetup.h"
#include "search/KovalinSticker.h"
#include "search/QXSDKKovalinSearchTerm.h"
#include "support/ManualClock.h"
#include "support/RecordingAnalyticsQueue.h"
#include "telemetry/DecodedEvents.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <QtCore/QLocale>
#include <QtCore/QSysInfo>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace kovalin::test {

/// A picker's sessions, and the events that arrive meanwhile.
class PickerEvents : public testing::Test {
protected:
    PickerEvents() { QXSDKClientSetup::setShared({.clientId = clientId()}); }
    ~PickerEvents() override { QXSDKClientSetup::setShared({}); }

    static QString clientId() { return QStringLiteral("a-host"); }

    static KovalinStickerPtr stickerWithComicId(const std::optional<QString>& comicId)
    {
        const auto sticker = std::make_shared<KovalinSticker>();
        sticker->setComicId(comicId);
        return sticker;
    }
    static QXSDKKovalinSearchTermPtr term(const QString& value, QXSDKKovalinCategory category)
    {
        return std::make_shared<QXSDKKovalinSearchTerm>(value, category);
    }

    /// A span of a session.
    void span(std::chrono::milliseconds length)
    {
        sessions->didBecomeActive();
        clock.advance(length);
        sessions->willResignActive();
    }

    /// What an event of the name has in it by the session of this moment: its base, and its own fields, whose names
    /// stand in it.
    [[nodiscard]] DecodedFields expected(const std::string& event, const DecodedFields& own = {}) const
    {
        const std::string base = event + ".kovalin_kit_event_base.";
        DecodedFields fields{{base + "kit_event_base.kit_type", "1"}};
        const auto addText = [&fields](const std::string& name, const QString& text) {
            if (!text.isEmpty()) {
                fields.emplace_back(name, text.toStdString());
            }
        };
        addText(base + "kit_event_base.client_id", clientId());
        addText(base + "kit_event_base.locale", QLocale::system().bcp47Name());
        addText(base + "kit_event_base.os_name", QSysInfo::productType());
        addText(base + "kit_event_base.os_version", QSysInfo::productVersion());
        addText(base + "kit_event_base.kit_variant_version", QString::fromLatin1(QXSDKKovalinKitVersionString));
        addText(base + "sticker_picker_session_id", sessions->sessionId().value_or(QString()));
        for (const auto& [name, value] : own) {
            fields.emplace_back(event + "." + name, value);
        }
        return fields;
    }

    ManualClock clock;
    InstalledAnalyticsQueue queue;
    std::shared_ptr<QXSDKKovalinStickerPickerSessionManager> sessions =
        std::make_shared<QXSDKKovalinStickerPickerSessionManager>();
};

} // namespace kovalin::test
