#pragma once

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

private:
    [[nodiscard]] QString _modelsPath() const;

    const QString _path;
};

} // namespace kovalin::backend
