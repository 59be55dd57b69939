#include "kovalin-backend/drawing/Sketch.h"

#include <QtCore/QtMath>
#include <QtGui/QPainter>
#include <QtGui/QPen>

namespace kovalin::drawing {

namespace {

QPen roundPen(const QColor& colour, qreal width)
{
    return {colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

qreal scaleOf(const QTransform& transform)
{
    return qSqrt(qAbs(transform.determinant()));
}

} // namespace

Sketch::Placed::Placed(Sketch& sketch, const QTransform& transform)
    : _sketch(sketch)
    , _before(sketch._transform)
{
    _sketch._transform = transform * _sketch._transform;
}

Sketch::Placed::~Placed()
{
    _sketch._transform = _before;
}

Sketch::Clipped::Clipped(Sketch& sketch, const QPainterPath& path)
    : _sketch(sketch)
    , _before(sketch._clip)
{
    _sketch._clips.push_back({_sketch._transform.map(path), _before});
    _sketch._clip = static_cast<int>(_sketch._clips.size()) - 1;
}

Sketch::Clipped::~Clipped()
{
    _sketch._clip = _before;
}

void Sketch::addMark(const QPainterPath& path, const QColor& fill, const QColor& pen, qreal width, bool counts)
{
    _marks.push_back({_transform.map(path), fill, pen, width * scaleOf(_transform), counts && _clip < 0, _clip});
}

void Sketch::shape(const QPainterPath& path, const QColor& fill, qreal outline)
{
    addMark(path, fill, colours::ink, outline, true);
}

void Sketch::flat(const QPainterPath& path, const QColor& fill)
{
    addMark(path, fill, {}, 0, false);
}

void Sketch::plate(const QPainterPath& path, const QColor& fill)
{
    addMark(path, fill, {}, 0, true);
}

void Sketch::line(const QPainterPath& path, qreal width, const QColor& colour)
{
    addMark(path, {}, colour, width, false);
}

void Sketch::limb(const QPainterPath& path, qreal width, const QColor& fill, qreal outline)
{
    blob({{path, width}}, fill, outline);
}

void Sketch::blob(const std::vector<Piece>& pieces, const QColor& fill, qreal outline)
{
    // An area's fill covers the inner half of its outline, so the outer half has to be nearly all of it.
    constexpr qreal areaOutline = 1.7;
    for (const Piece& piece : pieces) {
        const bool isLine = piece.width > 0;
        addMark(piece.path, isLine ? QColor() : colours::ink, colours::ink,
                isLine ? piece.width + outline : areaOutline * outline, true);
    }
    for (const Piece& piece : pieces) {
        if (piece.width > 0) {
            addMark(piece.path, {}, fill, piece.width - outline, false);
        } else {
            addMark(piece.path, fill, {}, 0, false);
        }
    }
}

void Sketch::add(const Sketch& other)
{
    const int firstClip = static_cast<int>(_clips.size());
    for (const Clip& clip : other._clips) {
        _clips.push_back({_transform.map(clip.path), clip.around < 0 ? _clip : clip.around + firstClip});
    }
    for (Mark mark : other._marks) {
        mark.path = _transform.map(mark.path);
        mark.width *= scaleOf(_transform);
        mark.clip = mark.clip < 0 ? _clip : mark.clip + firstClip;
        mark.counts = mark.counts && _clip < 0;
        _marks.push_back(std::move(mark));
    }
}

QRectF Sketch::bounds() const
{
    QRectF result;
    for (const Mark& mark : _marks) {
        if (mark.counts) {
            const qreal half = mark.width / 2;
            result |= mark.path.boundingRect().adjusted(-half, -half, half, half);
        }
    }
    return result;
}

void Sketch::paintPaper(QPainter& painter, qreal margin, const QColor& colour) const
{
    for (const Mark& mark : _marks) {
        if (mark.counts) {
            painter.setPen(roundPen(colour, mark.width + 2 * margin));
            painter.setBrush(mark.fill.isValid() ? QBrush(colour) : QBrush());
            painter.drawPath(mark.path);
        }
    }
}

void Sketch::setClip(QPainter& painter, int clip) const
{
    if (clip < 0) {
        painter.setClipping(false);
        return;
    }
    const Clip& inner = _clips[static_cast<std::size_t>(clip)];
    setClip(painter, inner.around);
    painter.setClipPath(inner.path, inner.around < 0 ? Qt::ReplaceClip : Qt::IntersectClip);
}

void Sketch::paint(QPainter& painter) const
{
    int clip = -1;
    for (const Mark& mark : _marks) {
        if (mark.clip != clip) {
            clip = mark.clip;
            setClip(painter, clip);
        }
        painter.setPen(mark.width > 0 ? roundPen(mark.pen, mark.width) : QPen(Qt::NoPen));
        painter.setBrush(mark.fill.isValid() ? QBrush(mark.fill) : QBrush());
        painter.drawPath(mark.path);
    }
    painter.setClipping(false);
}

QTransform at(qreal x, qreal y, qreal degrees, qreal scale)
{
    return QTransform().translate(x, y).rotate(degrees).scale(scale, scale);
}

QTransform mirrored()
{
    return QTransform::fromScale(-1, 1);
}

} // namespace kovalin::drawing
