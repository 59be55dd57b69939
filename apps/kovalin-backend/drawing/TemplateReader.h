#pragma once

#include "kovalin-backend/drawing/StickerTemplate.h"

#include <QtCore/QJsonValue>
#include <QtCore/QString>

namespace kovalin::drawing {

/// An entry that makes no template.
struct BadTemplate {
    explicit BadTemplate(QString what)
        : fault(std::move(what))
    {
    }

    QString fault; // part of a line
};

/// Reads an entry of a templates file. Every word in it has to be known, so that a slip of the pen doesn't pass for a
/// plainer sticker. Throws BadTemplate.
[[nodiscard]] StickerTemplate readTemplate(const QJsonValue& entry);

} // namespace kovalin::drawing
