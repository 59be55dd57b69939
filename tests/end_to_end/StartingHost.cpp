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
    ChildProcess process(QStringLiteral(KOVALIN_DELIVERY_HOST), arguments);
    const QJsonObject line = QJsonDocument::fromJson(process.readAll()).object();
    if (process.waitForExit() != 0) {
        throw std::runtime_error("the host failed");
    }
    return {line.value(QStringLiteral("ready")).toBool(), texts(line.value(QStringLiteral("stickers"))),
            texts(line.value(QStringLiteral("tags")))};
}

std::unique_ptr<ChildProcess> HostProgram::beginStart(const QString& baseUrl)
{
    return std::make_unique<ChildProcess>(QStringLiteral(KOVALIN_DELIVERY_HOST), QStringList{baseUrl, folder()});
}

} // namespace kovalin::test
