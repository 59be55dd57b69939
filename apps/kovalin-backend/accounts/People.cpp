#include "kovalin-backend/accounts/People.h"

#include <QtCore/QJsonArray>
#include <QtCore/QStringList>

#include <algorithm>
#include <utility>

namespace kovalin::backend {

namespace {

bool isTextOrMissing(const QJsonValue& value)
{
    return value.isUndefined() || (value.isString() && !value.toString().isEmpty());
}

/// The entries of the list `key`, all of which have an id of their own. Otherwise what is wrong with it.
std::variant<QList<Account>, QString> peopleIn(const QJsonObject& document, const QString& key)
{
    const QJsonValue list = document.value(key);
    if (!list.isArray()) {
        return QStringLiteral("\"%1\" is no list").arg(key);
    }
    QList<Account> people;
    const QJsonArray entries = list.toArray();
    for (const QJsonValue& entry : entries) {
        const QString place = QStringLiteral("entry %1 of \"%2\"").arg(people.size() + 1).arg(key);
        const QString id = entry[u"id"].toString();
        if (id.isEmpty()) {
            return place + QStringLiteral(": \"id\" is no text");
        }
        for (const QString& field : {QStringLiteral("name"), QStringLiteral("avatar")}) {
            if (!isTextOrMissing(entry[field])) {
                return place + QStringLiteral(": \"%1\" is no text").arg(field);
            }
        }
        if (std::ranges::any_of(people, [&id](const Account& each) { return each.id == id; })) {
            return place + QStringLiteral(": the id \"%1\" is there already").arg(id);
        }
        const QJsonValue avatar = entry[u"avatar"];
        people.append({.id = id,
                       .name = entry[u"name"].toString(id),
                       .avatarId = avatar.isString() ? std::optional(avatar.toString()) : std::nullopt});
    }
    return people;
}

} // namespace

QList<Account> defaultAccounts()
{
    return {{.id = QStringLiteral("alex"), .name = QStringLiteral("Alex"), .avatarId = QStringLiteral("alex-1")},
            {.id = QStringLiteral("newcomer"), .name = QStringLiteral("Newcomer")}};
}

std::variant<QList<Account>, QString> accountsIn(const QJsonObject& document)
{
    auto read = peopleIn(document, QStringLiteral("accounts"));
    if (const auto* accounts = std::get_if<QList<Account>>(&read); accounts && accounts->isEmpty()) {
        return QStringLiteral("\"accounts\" is empty");
    }
    return read;
}

std::variant<KnownUsers, QString> knownUsersIn(const QJsonObject& document)
{
    auto read = peopleIn(document, QStringLiteral("users"));
    if (auto* fault = std::get_if<QString>(&read)) {
        return std::move(*fault);
    }
    KnownUsers users;
    for (const Account& user : std::as_const(std::get<QList<Account>>(read))) {
        users.insert(user.id, user.avatarId);
    }
    return users;
}

} // namespace kovalin::backend
