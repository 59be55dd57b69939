#include "end_to_end/ServedModels.h"

#include "end_to_end/SearchStart.h"
#include "support/ModelContent.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

#include <stdexcept>
#include <string>

namespace kovalin::test {

QByteArray modelFor(std::int32_t comic, int otherKeys)
{
    vole::learned_search::test::ModelContent content;
    content.list({comic});
    content.add(startQuery.toStdString(), {{comic, 0.5F}}, 1, 1);
    for (int key = 0; key < otherKeys; ++key) {
        // Behind "dog", and in order.
        content.add("key" + QString::number(key).rightJustified(6, u'0').toStdString(), {{comic, 0.25F}}, 1, 1);
    }
    const auto bytes = content.toFile();
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

void ServedModels::putUp(int version, const QByteArray& model) const
{
    // Whole or not at all: the backend may look at any moment.
    QSaveFile file(path(version));
    if (!QDir().mkpath(QFileInfo(file.fileName()).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(model) != model.size() || !file.commit()) {
        throw std::runtime_error("can't put a model up");
    }
}

QByteArray ServedModels::model(int version) const
{
    QFile file(path(version));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString ServedModels::path(int version) const
{
    return _folder.filePath(QStringLiteral("models/LearnedSearch/%1.bin").arg(version));
}

} // namespace kovalin::test
