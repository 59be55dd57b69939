#pragma once

#include "picker/tags/QXSDKTagTile.h"

#include <QtCore/QList>
#include <QtCore/QStringList>
#include <QtGui/QColor>

class QXSDKKovalinTagIndex;

/// Makes tiles of tags: gives each tag its colour, by its pack, by its emotion, and by its text. Never changes; any
/// thread.
class QXSDKKovalinTagTileFactory final {
public:
    /// `colors` is the palette, by emotion; a shorter one than there are emotions begins again. `shouldRandomize` gives
    /// tags of one emotion different hues. `shouldUsePackColors` gives a tag that is a pack's title that pack's colour.
    ///
    /// Requires: the palette isn't empty; every tag without a pack's colour gets an invalid colour otherwise.
    QXSDKKovalinTagTileFactory(const QList<QColor>& colors, bool shouldRandomize, bool shouldUsePackColors);

    /// The picker's own palette, opaque, a colour for each emotion. In HSV, whose hues QColor keeps to a hundredth of a
    /// degree, so that these are exact; saturation and brightness are within 1/65535 of what they are defined by.
    [[nodiscard]] static QList<QColor> defaultColors();

    [[nodiscard]] const QList<QColor>& colors() const { return _colors; }
    [[nodiscard]] bool shouldRandomize() const { return _shouldRandomize; }
    [[nodiscard]] bool shouldUsePackColors() const { return _shouldUsePackColors; }

    /// One tile a tag, in their order, also for a tag that comes again.
    [[nodiscard]] QXSDKTagTileList fromTags(const QStringList& tags, const QXSDKKovalinTagIndex& tagIndex) const;

    /// Invalid for a pack without a colour, as damaged archives may hold.
    [[nodiscard]] QColor colorForTag(const QString& tag, const QXSDKKovalinTagIndex& tagIndex) const;

private:
    const QList<QColor> _colors;
    const bool _shouldRandomize;
    const bool _shouldUsePackColors;
};

/// The colour with its hue turned by -18 to 17 whole degrees, always the same for one tag in one process: in HSV, of
/// the same saturation and brightness, opaque, with whole degrees of hue. An invalid colour comes back as it is. Any
/// thread.
[[nodiscard]] QColor QXSDKRotateColorForTag(const QColor& color, const QString& tag);
