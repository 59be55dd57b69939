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

    /// The setup of the process; never null, all fields are empty before one is set. Any thread.
    [[nodiscard]] static std::shared_ptr<const QXSDKClientSetup> shared();

    /// Replaces the setup as a whole; what is under way goes on with the old one. Any thread.
    static void setShared(QXSDKClientSetup setup);
};
