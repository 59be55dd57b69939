#pragma once

#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QString>

#include <optional>
#include <variant>

// Whom the content folder knows. Any thread.

namespace kovalin::backend {

/// Somebody who can log in. A value.
struct Account {
    QString id;
    QString name; // shown to people

    /// Absent for somebody who has made none yet, and so has no content.
    std::optional<QString> avatarId = std::nullopt;

    friend bool operator==(const Account&, const Account&) = default;
};

/// The avatar ids of other users by their external ids; absent for those who have none.
using KnownUsers = QHash<QString, std::optional<QString>>;

/// Where the folder tells of none: one with an avatar and one without.
[[nodiscard]] QList<Account> defaultAccounts();

/// The accounts in {"accounts":[{"id":…,"name":…,"avatar":…},…]}, at least one; "name" and "avatar" may be missing.
/// Otherwise what is wrong with it.
[[nodiscard]] std::variant<QList<Account>, QString> accountsIn(const QJsonObject& document);

/// The users in {"users":[{"id":…,"name":…,"avatar":…},…]}; "name", which is for whoever reads the file, and "avatar" may be
/// missing. Otherwise what is wrong with it.
[[nodiscard]] std::variant<KnownUsers, QString> knownUsersIn(const QJsonObject& document);

} // namespace kovalin::backend
