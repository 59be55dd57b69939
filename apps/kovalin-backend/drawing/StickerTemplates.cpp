#include "kovalin-backend/drawing/StickerTemplates.h"

#include "kovalin-backend/drawing/TemplateReader.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace kovalin::drawing {

namespace {

[[noreturn]] void fail(const QString& fileName, const QString& fault)
{
    throw StickerTemplates::BadTemplates(QStringLiteral("%1: %2").arg(fileName, fault).toStdString());
}

QJsonArray entriesOf(const QByteArray& json, const QString& fileName)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        fail(fileName, QStringLiteral("not JSON: %1 at byte %2").arg(error.errorString()).arg(error.offset));
    }
    const QJsonValue entries = document.object().value(u"templates");
    if (!entries.isArray()) {
        fail(fileName, QStringLiteral("\"templates\" is no list"));
    }
    return entries.toArray();
}

} // namespace

StickerTemplates::StickerTemplates(const QByteArray& json, const QString& fileName)
{
    const QJsonArray entries = entriesOf(json, fileName);
    for (qsizetype i = 0; i < entries.size(); ++i) {
        try {
            StickerTemplate read = readTemplate(entries.at(i));
            if (_places.contains(read.id)) {
                throw BadTemplate(QStringLiteral("the id is there already"));
            }
            _places.insert(read.id, _templates.size());
            _templates.push_back(std::move(read));
        } catch (const BadTemplate& bad) {
            const QString id = entries.at(i).toObject().value(u"id").toString();
            const QString name = id.isEmpty() ? QString() : QStringLiteral(" \"%1\"").arg(id);
            fail(fileName, QStringLiteral("template %1%2: %3").arg(i + 1).arg(name, bad.fault));
        }
    }
}

StickerTemplates StickerTemplates::fromFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fail(path, file.errorString());
    }
    return {file.readAll(), path};
}

const StickerTemplate* StickerTemplates::find(const QString& id) const
{
    const auto place = _places.constFind(id);
    return place == _places.cend() ? nullptr : &_templates[*place];
}

} // namespace kovalin::drawing
