#pragma once

#include "kovalin-backend/drawing/StickerTemplates.h"

#include <QtCore/QFile>
#include <QtCore/QString>

#include <stdexcept>

/// The content folder that comes with the development server.
namespace example_content {

inline QString path(const QString& name)
{
    return QStringLiteral(KOVALIN_EXAMPLE_CONTENT "/%1").arg(name);
}

inline QByteArray read(const QString& name)
{
    QFile file(path(name));
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error(file.fileName().toStdString() + ": can't be read");
    }
    return file.readAll();
}

inline const kovalin::drawing::StickerTemplates& templates()
{
    static const auto read = kovalin::drawing::StickerTemplates::fromFile(path(QStringLiteral("templates.json")));
    return read;
}

} // namespace example_content
