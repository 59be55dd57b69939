#pragma once

#include <QtCore/QStringList>

/// The keys of all texts of the picker.
inline QStringList textKeys()
{
    return {
        QStringLiteral("login_title"),
        QStringLiteral("login_bottom_text"),
        QStringLiteral("create_avatar_title"),
        QStringLiteral("create_avatar_bottom_text"),
        QStringLiteral("create_avatar"),
        QStringLiteral("turn_on"),
        QStringLiteral("turn_on_permission_title_format"),
        QStringLiteral("turn_on_permission_action"),
        QStringLiteral("retry"),
        QStringLiteral("network_error_title"),
        QStringLiteral("network_error_message"),
        QStringLiteral("server_error_title"),
        QStringLiteral("server_error_message"),
        QStringLiteral("no_results"),
        QStringLiteral("search_kovalin"),
    };
}
