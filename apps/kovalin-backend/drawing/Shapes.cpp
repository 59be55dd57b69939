#include "kovalin-backend/drawing/Shapes.h"

#include <QtCore/QtMath>
#include <QtGui/QTransform>

#include <array>
#include <charconv>
#include <optional>

namespace kovalin::drawing {

namespace {

/// Takes path data apart: command letters and numbers.
class PathReader final {
public:
    explicit PathReader(std::string_view data)
        : _rest(data)
    {
    }

    QPainterPath read()
    {
        QPainterPath result;
        while (const char letter = nextLetter()) {
            if (!addCommand(result, letter)) {
                break;
            }
        }
        return result;
    }

private:
    void skipBlanks()
    {
        while (!_rest.empty() && (_rest.front() == ' ' || _rest.front() == ',' || _rest.front() == '\n')) {
            _rest.remove_prefix(1);
        }
    }

    /// The command's letter, or the one before if numbers follow; 0 at the end.
    char nextLetter()
    {
        skipBlanks();
        if (_rest.empty()) {
            return 0;
        }
        const char next = _rest.front();
        if ((next >= 'a' && next <= 'z') || (next >= 'A' && next <= 'Z')) {
            _rest.remove_prefix(1);
            _letter = next;
        }
        return _letter;
    }

    std::optional<qreal> number()
    {
        skipBlanks();
        qreal value = 0;
        const auto [end, error] = std::from_chars(_rest.data(), _rest.data() + _rest.size(), value);
        if (error != std::errc()) {
            return std::nullopt;
        }
        _rest.remove_prefix(static_cast<std::size_t>(end - _rest.data()));
        return value;
    }

    std::optional<QPointF> point(QPointF origin)
    {
        const auto x = number();
        const auto y = x ? number() : x;
        return y ? std::optional(origin + QPointF(*x, *y)) : std::nullopt;
    }

    bool addCommand(QPainterPath& result, char letter)
    {
        const bool isRelative = letter >= 'a';
        const QPointF current = result.currentPosition();
        const QPointF origin = isRelative ? current : QPointF();
        switch (letter) {
        case 'M':
        case 'm':
            return with<1>(origin, [&](const auto& p) {
                result.moveTo(p[0]);
                _letter = isRelative ? 'l' : 'L';
            });
        case 'L':
        case 'l':
            return with<1>(origin, [&](const auto& p) { result.lineTo(p[0]); });
        case 'Q':
        case 'q':
            return with<2>(origin, [&](const auto& p) { result.quadTo(p[0], p[1]); });
        case 'C':
        case 'c':
            return with<3>(origin, [&](const auto& p) { result.cubicTo(p[0], p[1], p[2]); });
        case 'H':
        case 'h':
        case 'V':
        case 'v':
            return addStraight(result, letter, origin);
        case 'Z':
        case 'z':
            result.closeSubpath();
            return true;
        default:
            return false;
        }
    }

    bool addStraight(QPainterPath& result, char letter, QPointF origin)
    {
        const QPointF current = result.currentPosition();
        const auto value = number();
        if (value) {
            const bool isHorizontal = letter == 'H' || letter == 'h';
            result.lineTo(isHorizontal ? QPointF(origin.x() + *value, current.y())
                                       : QPointF(current.x(), origin.y() + *value));
        }
        return value.has_value();
    }

    template <std::size_t count, typename Use>
    bool with(QPointF origin, const Use& use)
    {
        std::array<QPointF, count> points;
        for (QPointF& target : points) {
            const auto next = point(origin);
            if (!next) {
                return false;
            }
            target = *next;
        }
        use(points);
        return true;
    }

    std::string_view _rest;
    char _letter = 0;
};

QPointF onCircle(qreal x, qreal y, qreal radius, qreal degrees)
{
    const qreal radians = qDegreesToRadians(degrees);
    return {x + radius * qCos(radians), y + radius * qSin(radians)};
}

QPainterPath placed(std::string_view data, qreal x, qreal y, qreal scale)
{
    return QTransform(scale, 0, 0, scale, x, y).map(path(data));
}

} // namespace

QPainterPath path(std::string_view data)
{
    return PathReader(data).read();
}

QPainterPath circle(qreal x, qreal y, qreal radius)
{
    return ellipse(x, y, radius, radius);
}

QPainterPath ellipse(qreal x, qreal y, qreal radiusX, qreal radiusY)
{
    QPainterPath result;
    result.addEllipse(QPointF(x, y), radiusX, radiusY);
    return result;
}

QPainterPath box(qreal left, qreal top, qreal width, qreal height, qreal cornerRadius)
{
    QPainterPath result;
    result.addRoundedRect(QRectF(left, top, width, height), cornerRadius, cornerRadius);
    return result;
}

QPainterPath segment(QPointF from, QPointF to)
{
    return polyline({from, to});
}

QPainterPath polyline(std::initializer_list<QPointF> points)
{
    QPainterPath result(*points.begin());
    for (const QPointF& point : points) {
        result.lineTo(point);
    }
    return result;
}

QPainterPath polygon(std::initializer_list<QPointF> points)
{
    QPainterPath result = polyline(points);
    result.closeSubpath();
    return result;
}

QPainterPath arc(qreal x, qreal y, qreal radius, qreal fromDegrees, qreal sweepDegrees)
{
    const QRectF around(x - radius, y - radius, 2 * radius, 2 * radius);
    QPainterPath result;
    result.arcMoveTo(around, -fromDegrees); // Qt counts against the clock
    result.arcTo(around, -fromDegrees, -sweepDegrees);
    return result;
}

QPainterPath heart(qreal x, qreal y, qreal size)
{
    return placed("M0 45C-18 30 -50 8 -50 -17C-50 -35 -38 -45 -25 -45C-14 -45 -5 -39 0 -29"
                  "C5 -39 14 -45 25 -45C38 -45 50 -35 50 -17C50 8 18 30 0 45Z",
                  x, y, size / 100);
}

QPainterPath star(qreal x, qreal y, int points, qreal outer, qreal inner, qreal turnDegrees)
{
    QPainterPath result;
    for (int i = 0; i < 2 * points; ++i) {
        const QPointF corner = onCircle(x, y, i % 2 == 0 ? outer : inner, turnDegrees - 90 + 180.0 * i / points);
        i == 0 ? result.moveTo(corner) : result.lineTo(corner);
    }
    result.closeSubpath();
    return result;
}

QPainterPath sparkle(qreal x, qreal y, qreal size)
{
    return placed("M0 -50C5 -14 14 -5 50 0C14 5 5 14 0 50C-5 14 -14 5 -50 0C-14 -5 -5 -14 0 -50Z", x, y, size / 100);
}

QPainterPath drop(qreal x, qreal y, qreal size)
{
    return placed("M0 -55C14 -28 34 -6 34 18C34 38 18 50 0 50C-18 50 -34 38 -34 18C-34 -6 -14 -28 0 -55Z", x, y,
                  size / 100);
}

QPainterPath cloud(qreal x, qreal y, qreal width)
{
    return placed("M-34 24C-54 24 -56 -4 -36 -7C-38 -28 -10 -36 -2 -20C8 -36 36 -30 33 -8C56 -8 54 24 34 24Z", x, y,
                  width / 100);
}

} // namespace kovalin::drawing
