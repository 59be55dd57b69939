#include "kovalin-backend/ContentFolder.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QJsonParseError>
#include <QtCore/QStringList>

#include <algorithm>
#include <utility>
#include <variant>

namespace kovalin::backend {

namespace {

[[noreturn]] void throwFault(const QString& path, const QString& fault)
{
    const QString text = QDir::toNativeSeparators(path) + QStringLiteral(": ") + fault;
    throw ContentFault(text.toStdString());
}

QByteArray contentOf(const QString& path)
{
    // Opening a pipe would wait for whoever writes into it.
    if (!QFileInfo(path).isFile()) {
        throwFault(path, QStringLiteral("is no file"));
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throwFault(path, file.errorString());
    }
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        throwFault(path, file.errorString());
    }
    return content;
}

std::optional<qint32> versionOf(const QString& baseName)
{
    bool isNumber = false;
    const int version = baseName.toInt(&isNumber);
    return isNumber && version > 0 && QString::number(version) == baseName ? std::optional(version) : std::nullopt;
}

QString modelFileName(qint32 version)
{
    return QString::number(version) + QStringLiteral(".bin");
}

/// The object in the file at `path`; an empty one where it is JSON of another kind.
QJsonObject objectIn(const QString& path, const QByteArray& content)
{
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError) {
        throwFault(path, QStringLiteral("no JSON: %1, at byte %2").arg(error.errorString()).arg(error.offset));
    }
    return document.object();
}

/// What was read of the file at `path`, unless that is a fault.
template <class Value>
Value valueOrFault(const QString& path, std::variant<Value, QString> read)
{
    if (const auto* fault = std::get_if<QString>(&read)) {
        throwFault(path, *fault);
    }
    return std::get<Value>(std::move(read));
}

/// Absent when it is one.
std::optional<QString> configsFault(const QJsonObject& object)
{
    if (!object.value(u"ttlSeconds").isDouble()) {
        return QStringLiteral("\"ttlSeconds\" is no number");
    }
    if (!object.value(u"configs").isObject()) {
        return QStringLiteral("\"configs\" is no object");
    }
    const QJsonObject configs = object.value(u"configs").toObject();
    for (auto each = configs.begin(); each != configs.end(); ++each) {
        if (!each.value().isObject()) {
            return QStringLiteral("the configuration \"%1\" is no object").arg(each.key());
        }
    }
    return std::nullopt;
}

} // namespace

ContentFolder::ContentFolder(QString path)
    : _path(std::move(path))
{
    const QFileInfo folder(_path);
    if (_path.isEmpty() || !folder.exists()) {
        throwFault(_path, QStringLiteral("no such folder"));
    }
    if (!folder.isDir()) {
        throwFault(_path, QStringLiteral("is no folder"));
    }
}

std::optional<QList<qint32>> ContentFolder::modelVersions(const QString& name) const
{
    const QStringList models = QDir(_modelsPath()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    if (!models.contains(name)) {
        return std::nullopt;
    }
    QList<qint32> versions;
    const QDir folder(QDir(_modelsPath()).filePath(name));
    const QStringList files = folder.entryList({QStringLiteral("*.bin")}, QDir::Files | QDir::CaseSensitive);
    for (const QString& file : files) {
        if (const auto version = versionOf(QFileInfo(file).completeBaseName())) {
            versions.append(*version);
        }
    }
    std::sort(versions.begin(), versions.end());
    return versions;
}

std::optional<QByteArray> ContentFolder::model(const QString& name, const QString& version) const
{
    const auto versions = modelVersions(name);
    const auto number = versionOf(version);
    if (!versions || !number || !versions->contains(*number)) {
        return std::nullopt;
    }
    return contentOf(QDir(QDir(_modelsPath()).filePath(name)).filePath(modelFileName(*number)));
}

QByteArray ContentFolder::configs() const
{
    const QString name = QStringLiteral("configs.json");
    auto content = _file(name);
    if (!content) {
        return QByteArrayLiteral(R"({"ttlSeconds":3600,"configs":{"kovalinLearnedSearch":{"enabled":true}}})");
    }
    if (const auto fault = configsFault(objectIn(path(name), *content))) {
        throwFault(path(name), *fault);
    }
    return *std::move(content);
}

QByteArray ContentFolder::packs() const
{
    const QString name = QStringLiteral("packs.json");
    auto content = _file(name);
    if (!content) {
        return QByteArrayLiteral(R"({"packs":[]})");
    }
    if (!objectIn(path(name), *content).value(u"packs").isArray()) {
        throwFault(path(name), QStringLiteral("\"packs\" is no list"));
    }
    return *std::move(content);
}

std::optional<QByteArray> ContentFolder::templates() const
{
    return _file(QStringLiteral("templates.json"));
}

QList<Account> ContentFolder::accounts() const
{
    const QString name = QStringLiteral("accounts.json");
    const auto content = _file(name);
    return content ? valueOrFault(path(name), accountsIn(objectIn(path(name), *content))) : defaultAccounts();
}

KnownUsers ContentFolder::users() const
{
    const QString name = QStringLiteral("users.json");
    const auto content = _file(name);
    return content ? valueOrFault(path(name), knownUsersIn(objectIn(path(name), *content))) : KnownUsers();
}

QString ContentFolder::path(const QString& name) const
{
    return QDir(_path).filePath(name);
}

QString ContentFolder::_modelsPath() const
{
    return path(QStringLiteral("models"));
}

/// Absent when there is none.
std::optional<QByteArray> ContentFolder::_file(const QString& name) const
{
    return QFileInfo::exists(path(name)) ? std::optional(contentOf(path(name))) : std::nullopt;
}

} // namespace kovalin::backend
