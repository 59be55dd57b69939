#include "kovalin-host/FileTokenStore.h"

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSaveFile>

#include <optional>

namespace kovalin::host {

namespace {

QJsonObject readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

void writeAll(const QString& path, const QJsonObject& secrets)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        file.write(QJsonDocument(secrets).toJson());
        file.commit();
    }
}

} // namespace

FileTokenStore::FileTokenStore(const QString& file)
    : _file(file)
{
}

void FileTokenStore::read(const QString& key, ReadCompletion completion)
{
    std::optional<QByteArray> secret;
    {
        const std::scoped_lock lock(_mutex);
        const QJsonObject secrets = readAll(_file);
        if (secrets.contains(key)) {
            secret = QByteArray::fromBase64(secrets[key].toString().toLatin1());
        }
    }
    completion(secret);
}

void FileTokenStore::write(const QString& key, const QByteArray& secret)
{
    const std::scoped_lock lock(_mutex);
    QJsonObject secrets = readAll(_file);
    secrets.insert(key, QString::fromLatin1(secret.toBase64()));
    writeAll(_file, secrets);
}

void FileTokenStore::remove(const QString& key)
{
    const std::scoped_lock lock(_mutex);
    QJsonObject secrets = readAll(_file);
    secrets.remove(key);
    writeAll(_file, secrets);
}

} // namespace kovalin::host
