#include "picker/config/KovalinResources.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

namespace {

QString folderPath(const QString& folder)
{
    return QStringLiteral(":/QXSDKKovalinKit/") + folder;
}

} // namespace

// Outside of any namespace, as Q_INIT_RESOURCE asks. It refers to the resources by name, so that a linker takes them out of a
// static library; registering them again changes nothing.
static void registerResources()
{
    Q_INIT_RESOURCE(kovalin_picker);
}

static void ensureResources()
{
    [[maybe_unused]] static const bool areRegistered = (registerResources(), true);
}

QByteArray kovalinResource(const QString& folder, const QString& fileName)
{
    // Asked for among the names, and not opened by path: a path would also lead out of the folder.
    if (!kovalinResourceNames(folder).contains(fileName)) {
        return {};
    }
    QFile file(folderPath(folder) + u'/' + fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList kovalinResourceNames(const QString& folder)
{
    ensureResources();
    return QDir(folderPath(folder)).entryList(QDir::Files, QDir::Name);
}
