#pragma once

#include "kovalin-backend/drawing/Palette.h"

#include <QtCore/QRectF>
#include <QtGui/QPainterPath>
#include <QtGui/QTransform>

#include <optional>
#include <vector>

class QPainter;

namespace kovalin::drawing {

/// A drawing as a list of marks, so that it can be measured before it is painted, and painted twice: as paper, wider than
/// itself, and in colour.
///
/// One thread at a time; a value otherwise. Lengths are units of the drawing; what the current transform is when a mark is
/// made counts for it.
class Sketch final {
public:
    static constexpr qreal bold = 4.5; // outlines of figures and things
    static constexpr qreal fine = 3;   // lines inside them

    /// A piece of a blob: an area, or, with a width, a line with round ends.
    struct Piece {
        QPainterPath path;
        qreal width = 0;
    };

    /// Applies a transform to the marks made during its life.
    class Placed final {
    public:
        Placed(Sketch& sketch, const QTransform& transform);
        ~Placed();
        Q_DISABLE_COPY_MOVE(Placed)

    private:
        Sketch& _sketch;
        QTransform _before;
    };

    /// Cuts the marks made during its life at the path, and at that of the one around it.
    class Clipped final {
    public:
        Clipped(Sketch& sketch, const QPainterPath& path);
        ~Clipped();
        Q_DISABLE_COPY_MOVE(Clipped)

    private:
        Sketch& _sketch;
        int _before;
    };

    /// An area with an outline.
    void shape(const QPainterPath& path, const QColor& fill, qreal outline = bold);
    /// An area without one, which doesn't count for the paper around the drawing.
    void flat(const QPainterPath& path, const QColor& fill);
    /// The same, counting.
    void plate(const QPainterPath& path, const QColor& fill);
    /// A line with round ends, which doesn't count for the paper.
    void line(const QPainterPath& path, qreal width = fine, const QColor& colour = colours::ink);
    /// A thick line with an outline.
    void limb(const QPainterPath& path, qreal width, const QColor& fill, qreal outline = bold);
    /// Pieces that grow together under one outline.
    void blob(const std::vector<Piece>& pieces, const QColor& fill, qreal outline = bold);
    /// Undoes the mirroring of what surrounds it, if there is any: for letters, which have to be read.
    [[nodiscard]] QTransform upright() const { return QTransform::fromScale(_transform.determinant() < 0 ? -1 : 1, 1); }
    /// Takes over another drawing's marks, under the current transform.
    void add(const Sketch& other);

    /// Around all that counts for the paper; empty if nothing does.
    [[nodiscard]] QRectF bounds() const;
    /// The paper: all that counts, wider by `margin` on each side.
    void paintPaper(QPainter& painter, qreal margin, const QColor& colour) const;
    void paint(QPainter& painter) const;

private:
    struct Mark {
        QPainterPath path;
        QColor fill; // invalid for none
        QColor pen;  // of no meaning where the width is 0
        qreal width; // of the pen
        bool counts; // for the paper
        int clip;    // in _clips; -1 for none
    };

    struct Clip {
        QPainterPath path;
        int around; // in _clips; -1 for none
    };

    void setClip(QPainter& painter, int clip) const;
    void addMark(const QPainterPath& path, const QColor& fill, const QColor& pen, qreal width, bool counts);

    std::vector<Mark> _marks;
    std::vector<Clip> _clips;
    QTransform _transform;
    int _clip = -1;
};

/// Moves to (x, y), turns clockwise by `degrees` there and scales.
[[nodiscard]] QTransform at(qreal x, qreal y, qreal degrees = 0, qreal scale = 1);
/// Left and right changed.
[[nodiscard]] QTransform mirrored();

} // namespace kovalin::drawing
