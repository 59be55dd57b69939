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

/// Absent when it is one.
std::optional<QString> configsFault(const QByteArray& content)
{
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError) {
        return QStringLiteral("no JSON: %1, at byte %2").arg(error.errorString()).arg(error.offset);
    }
    const QJsonObject object = document.object();
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
    const QString path = QDir(_path).filePath(QStringLiteral("configs.json"));
    if (!QFileInfo::exists(path)) {
        return QByteArrayLiteral(R"({"ttlSeconds":3600,"configs":{"kovalinLearnedSearch":{"enabled":true}}})");
    }
    QByteArray content = contentOf(path);
    if (const auto fault = configsFault(content)) {
        throwFault(path, *fault);
    }
    return content;
}

QString ContentFolder::_modelsPath() const
{
    return QDir(_path).filePath(QStringLiteral("models"));
}

} // namespace kovalin::backend
