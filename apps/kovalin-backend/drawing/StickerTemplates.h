#pragma once

#include "kovalin-backend/drawing/StickerTemplate.h"

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QStringList>

#include <stdexcept>

namespace kovalin::drawing {

/// The templates of a content folder.
///
/// Immutable once made; any thread.
class StickerTemplates final {
public:
    /// The templates can't be used. The text is one line that names the file, the entry and what is wrong with it.
    class BadTemplates final : public std::runtime_error {
    public:
        using std::runtime_error::runtime_error;
    };

    /// Without any template.
    StickerTemplates() = default;
    /// Reads the JSON text of a templates file; `fileName` is for errors alone. Throws BadTemplates.
    StickerTemplates(const QByteArray& json, const QString& fileName);
    /// Reads the file. Throws BadTemplates, also when it can't be read.
    [[nodiscard]] static StickerTemplates fromFile(const QString& path);

    /// Null when there is none of that id; else as long as this object lives.
    [[nodiscard]] const StickerTemplate* find(const QString& id) const;
    /// In the order of the file.
    [[nodiscard]] const std::vector<StickerTemplate>& all() const { return _templates; }

private:
    std::vector<StickerTemplate> _templates;
    QHash<QString, std::size_t> _places; // in _templates, by id
};

} // namespace kovalin::drawing
