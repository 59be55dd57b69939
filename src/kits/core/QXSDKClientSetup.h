#pragma once

#include "QXSDKKovalinKit/Export.h"

#include <QtCore/QString>

#include <memory>

/// Who the host is, and where its servers are. A value; the host sets it up before it uses anything else.
struct QXSDKKOVALINKIT_EXPORT QXSDKClientSetup {
    /// What the host is registered under; empty before it is set up.
    QString clientId = {};

    // The beginnings of all addresses, "https://host/path" without a slash at the end. Empty ones reach nothing.

    QString contentBaseUrl = {};        ///< models, stickers
    QString authenticationBaseUrl = {}; ///< linking an account
    QString apiBaseUrl = {};            ///< queries, configuration, metrics, events

    /// Whether events may be collected about what the user does: false for one who opted out. Switching it off erases what the
    /// analytics queue that comes with the kit has kept, on disk too, and breaks off what it is posting; from then on it takes
    /// nothing, until it is switched on again. A queue that is made afterwards erases what an earlier run of the program left, so a
    /// host makes one for users who opted out too.
    bool isAnalyticsEnabled = true;

    /// The page of a store where the user gets the app that avatars are made in ("itms-apps://store.example/app/id1"),
    /// opened through `QXSDKURLOpener` where that app isn't found on the device. Empty: the user can't be led there.
    QString avatarAppStoreUrl = {};

    /// The setup of the process; never null. Before one is set all texts are empty, and analytics is on. Any thread.
    [[nodiscard]] static std::shared_ptr<const QXSDKClientSetup> shared();

    /// Replaces the setup as a whole; what is under way goes on with the old one. But analytics obeys at once: an event that is
    /// added when this has returned is kept or not as this setup says. Any thread.
    static void setShared(QXSDKClientSetup setup);
};
