#pragma once

#include "kovalin-backend/accounts/People.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <optional>
#include <stdexcept>

namespace kovalin::backend {

/// What is in the content folder can't be used. The text names the file and what is wrong with it.
class ContentFault final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The files that are served. Nothing is kept: each call looks into the folder, so that a change counts at once. A
/// name that a client sends never becomes part of a path; it is compared with what is there. One thread.
///
///     models/<name>/<version>.bin    a search model; other files there are ignored
///     configs.json                   the dynamic configuration
///     packs.json                     the packs document
///     templates.json                 what the stickers show
///     accounts.json                  who can log in
///     users.json                     the avatars of others
class ContentFolder final {
public:
    /// Throws ContentFault when there is no such folder.
    explicit ContentFolder(QString path);

    /// The versions of the model `name`, ascending; absent when there is no such model. A version is what a client
    /// can hold, a number from 1 to 2147483647, written without sign and leading zeros.
    [[nodiscard]] std::optional<QList<qint32>> modelVersions(const QString& name) const;

    /// The whole file; absent when there is no such version. Throws ContentFault when it can't be read.
    [[nodiscard]] std::optional<QByteArray> model(const QString& name, const QString& version) const;

    /// The dynamic configuration, a JSON document of the form {"ttlSeconds":n,"configs":{"<name>":{…}}}. Without a
    /// file it says that learned search is on and good for an hour. Throws ContentFault when the file can't be read
    /// or has another form.
    [[nodiscard]] QByteArray configs() const;

    /// The packs document, {"packs":[…]}, with "{base}" and "{avatar}" in the URLs. Without a file there are no packs. Throws
    /// ContentFault when the file can't be read or has another form.
    [[nodiscard]] QByteArray packs() const;

    /// The templates of the stickers, as they stand in the file; absent without one. Throws ContentFault when it can't be read.
    [[nodiscard]] std::optional<QByteArray> templates() const;

    /// At least one; `defaultAccounts` without a file. Throws ContentFault as `packs`.
    [[nodiscard]] QList<Account> accounts() const;

    /// Nobody without a file. Throws ContentFault as `packs`.
    [[nodiscard]] KnownUsers users() const;

    /// The path of a file in the folder.
    [[nodiscard]] QString path(const QString& name) const;

private:
    [[nodiscard]] QString _modelsPath() const;
    [[nodiscard]] std::optional<QByteArray> _file(const QString& name) const;

    const QString _path;
};

} // namespace kovalin::backend
