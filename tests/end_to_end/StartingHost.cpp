#include "end_to_end/StartingHost.h"

#include "end_to_end/FileSizeLimit.h"
#include "platform/foundation/CachesDirectory.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <stdexcept>

namespace kovalin::test {

namespace {

constexpr int capMillis = 120'000; // against a hang alone

QString folderOfTheProcess()
{
    static const QTemporaryDir folder;
    static const bool isSet = [] {
        platform::setCachesDirectory(folder.path());
        return true;
    }();
    static_cast<void>(isSet);
    return folder.path();
}

QStringList texts(const QJsonValue& array)
{
    QStringList list;
    for (const QJsonValue& text : array.toArray()) {
        list.append(text.toString());
    }
    return list;
}

} // namespace

StartingHost::~StartingHost() = default;

QString StartingHost::modelPath(int version) const
{
    return folder() + QStringLiteral("/qxsdk-kovalin-model-LearnedSearch-%1.plist").arg(version);
}

QString StartingHost::recordPath() const
{
    return folder() + QStringLiteral("/qxsdk-kovalin-model-metadata-LearnedSearch.plist");
}

HostHere::HostHere()
{
    QDir caches(folderOfTheProcess());
    for (const QString& name : caches.entryList(QDir::Files)) {
        caches.remove(name);
    }
}

SearchStart HostHere::start(const QString& baseUrl, std::optional<int> fileSizeLimit)
{
    std::optional<FileSizeLimit> limit;
    if (fileSizeLimit) {
        limit.emplace(static_cast<rlim_t>(*fileSizeLimit));
    }
    return startAndSearch(baseUrl);
}

QString HostHere::folder() const
{
    return folderOfTheProcess();
}

SearchStart HostProgram::start(const QString& baseUrl, std::optional<int> fileSizeLimit)
{
    QStringList arguments{baseUrl, folder()};
    if (fileSizeLimit) {
        arguments << QStringLiteral("--file-size-limit") << QString::number(*fileSizeLimit);
    }
    QProcess process;
    process.start(QStringLiteral(KOVALIN_DELIVERY_HOST), arguments);
    if (!process.waitForFinished(capMillis) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0) {
        throw std::runtime_error("the host failed: " + process.readAllStandardError().toStdString());
    }
    const QJsonObject line = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    return {line.value(QStringLiteral("ready")).toBool(), texts(line.value(QStringLiteral("stickers"))),
            texts(line.value(QStringLiteral("tags")))};
}

std::unique_ptr<QProcess> HostProgram::beginStart(const QString& baseUrl)
{
    auto process = std::make_unique<QProcess>();
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(QStringLiteral(KOVALIN_DELIVERY_HOST), {baseUrl, folder()});
    if (!process->waitForStarted(capMillis)) {
        throw std::runtime_error("the host can't be started");
    }
    return process;
}

} // namespace kovalin::test
