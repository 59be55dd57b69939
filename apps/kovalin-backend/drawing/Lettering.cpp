#include "kovalin-backend/drawing/Lettering.h"

#include "kovalin-backend/drawing/LetterShapes.h"
#include "kovalin-backend/drawing/Named.h"
#include "kovalin-backend/drawing/Shapes.h"

#include <QtCore/QStringList>
#include <QtCore/QtMath>
#include <QtGui/QFont>
#include <QtGui/QFontMetricsF>

#include <array>
#include <limits>
#include <vector>

namespace kovalin::drawing {

namespace {

// Lengths in units of letters, which are 100 high.
constexpr qreal stroke = 21;
constexpr qreal outline = 17; // on each side of the stroke
constexpr qreal letterGap = 37;
constexpr qreal wordGap = 58;
constexpr qreal lineHeight = 152;
constexpr qsizetype mostLines = 4;
constexpr qsizetype longestCaption = 120; // characters; what comes behind couldn't be read anyway

struct Glyph {
    QPainterPath path;
    qreal width = 0;
    bool isArea = false; // filled, and not a stroke's middle
};

Glyph glyphFromFont(const QString& character)
{
    QFont font;
    font.setBold(true);
    font.setPixelSize(130);
    Glyph glyph;
    glyph.path.addText(0, 100, font, character);
    glyph.width = QFontMetricsF(font).horizontalAdvance(character);
    glyph.isArea = true;
    return glyph;
}

/// The characters as they will be drawn; surrogate pairs and combining marks stay with what they belong to.
std::vector<Glyph> glyphsOf(const QString& word)
{
    std::vector<Glyph> glyphs;
    for (qsizetype i = 0; i < word.size();) {
        qsizetype length = word.at(i).isHighSurrogate() && i + 1 < word.size() ? 2 : 1;
        while (i + length < word.size() && word.at(i + length).isMark()) {
            ++length;
        }
        const LetterShape* const shape = length == 1 ? letterShapeOf(word.at(i)) : nullptr;
        glyphs.push_back(shape ? Glyph{path(shape->strokes), shape->width} : glyphFromFont(word.mid(i, length)));
        i += length;
    }
    return glyphs;
}

struct Word {
    std::vector<Glyph> glyphs;
    qreal width = 0;
};

using Line = std::vector<Word>;

std::vector<Word> wordsOf(const QString& caption)
{
    std::vector<Word> words;
    const QStringList texts = caption.left(longestCaption).simplified().toUpper().split(u' ', Qt::SkipEmptyParts);
    for (const QString& text : texts) {
        Word word{glyphsOf(text)};
        for (const Glyph& glyph : word.glyphs) {
            word.width += glyph.width + letterGap;
        }
        word.width -= letterGap;
        words.push_back(std::move(word));
    }
    return words;
}

qreal widthOf(const Line& line)
{
    qreal width = 0;
    for (const Word& word : line) {
        width += word.width + letterGap + wordGap;
    }
    return width - letterGap - wordGap;
}

/// Lines no wider than `limit`, unless a word alone is.
std::vector<Line> broken(const std::vector<Word>& words, qreal limit)
{
    std::vector<Line> lines;
    for (const Word& word : words) {
        if (lines.empty() || widthOf(lines.back()) + letterGap + wordGap + word.width > limit) {
            lines.emplace_back();
        }
        lines.back().push_back(word);
    }
    return lines;
}

qreal widestOf(const std::vector<Line>& lines)
{
    qreal widest = 0;
    for (const Line& line : lines) {
        widest = qMax(widest, widthOf(line));
    }
    return widest;
}

/// How much lines may be enlarged to fit into the room.
qreal scaleFor(const std::vector<Line>& lines, QSizeF room)
{
    constexpr qreal aroundLetters = stroke + 2 * outline;
    constexpr qreal forStyle = 30; // waves, slants and arches take some height
    const qreal height = lineHeight * static_cast<qreal>(lines.size() - 1) + 100 + aroundLetters + forStyle;
    return qMin(room.width() / (widestOf(lines) + aroundLetters), room.height() / height);
}

/// The break into lines that lets the letters be largest.
std::vector<Line> bestLines(const std::vector<Word>& words, QSizeF room, qreal largestScale)
{
    std::vector<Line> best = broken(words, std::numeric_limits<qreal>::max());
    for (qsizetype count = 2; count <= mostLines; ++count) {
        if (scaleFor(best, room) >= largestScale) {
            break; // fewer lines are calmer
        }
        // The narrowest limit that gives this many lines.
        qreal low = 0;
        qreal high = widestOf(broken(words, std::numeric_limits<qreal>::max()));
        for (int step = 0; step < 20; ++step) {
            const qreal middle = (low + high) / 2;
            (static_cast<qsizetype>(broken(words, middle).size()) <= count ? high : low) = middle;
        }
        std::vector<Line> lines = broken(words, high);
        if (scaleFor(lines, room) > scaleFor(best, room) * 1.08) {
            best = std::move(lines);
        }
    }
    return best;
}

/// Where a letter stands: `x` is its middle, from -1 at the line's left end to 1, `index` counts letters.
QTransform letterPlace(Lettering lettering, qreal x, qreal lineWidth, int index)
{
    const qreal sign = index % 2 == 0 ? 1 : -1;
    switch (lettering) {
    case Lettering::Straight:
        return QTransform().rotate(1.5 * sign);
    case Lettering::Arch: {
        const qreal rise = qMin(26.0, lineWidth * 0.05);
        return QTransform()
            .translate(0, rise * (x * x - 0.5))
            .rotate(qRadiansToDegrees(qAtan(4 * rise * x / qMax(lineWidth, 1.0))));
    }
    case Lettering::Wave:
        return QTransform().translate(0, 11 * qSin(index * 1.15)).rotate(4 * qCos(index * 1.15));
    case Lettering::Slant:
        return QTransform().translate(0, -0.02 * lineWidth * x).shear(-0.14, 0);
    case Lettering::Stagger:
        return QTransform().translate(0, 7 * sign).rotate(5 * sign);
    }
    return {};
}

struct PlacedGlyph {
    QPainterPath path;
    bool isArea;
};

std::vector<PlacedGlyph> placed(const std::vector<Line>& lines, Lettering lettering)
{
    std::vector<PlacedGlyph> result;
    int index = 0;
    qreal y = -lineHeight * static_cast<qreal>(lines.size() - 1) / 2;
    for (const Line& line : lines) {
        const qreal width = widthOf(line);
        qreal x = -width / 2;
        for (const Word& word : line) {
            for (const Glyph& glyph : word.glyphs) {
                const qreal middle = x + glyph.width / 2;
                const QTransform transform = QTransform::fromTranslate(-glyph.width / 2, -50) *
                                             letterPlace(lettering, width > 0 ? 2 * middle / width : 0, width, index) *
                                             QTransform::fromTranslate(middle, y);
                result.push_back({transform.map(glyph.path), glyph.isArea});
                x += glyph.width + letterGap;
                ++index;
            }
            x += wordGap;
        }
        y += lineHeight;
    }
    return result;
}

void drawLetters(Sketch& sketch, const std::vector<PlacedGlyph>& glyphs, const QColor& colour)
{
    std::vector<Sketch::Piece> pieces;
    for (const PlacedGlyph& glyph : glyphs) {
        pieces.push_back({glyph.path, glyph.isArea ? 0 : stroke + outline});
    }
    sketch.blob(pieces, colour, outline);
}

constexpr std::array<LetteringStyle, 5> styles{{
    {"straight", Lettering::Straight},
    {"arch", Lettering::Arch},
    {"wave", Lettering::Wave},
    {"slant", Lettering::Slant},
    {"stagger", Lettering::Stagger},
}};

} // namespace

const LetteringStyle* letteringNamed(std::string_view name)
{
    return findNamed(styles, name);
}

Sketch drawCaption(const QString& caption, Lettering lettering, const QColor& colour, QSizeF room, qreal tallest)
{
    const std::vector<Word> words = wordsOf(caption);
    if (words.empty()) {
        return {};
    }
    const qreal largestScale = tallest / 100;
    Sketch letters;
    drawLetters(letters, placed(bestLines(words, room, largestScale), lettering), colour);
    const QRectF bounds = letters.bounds();
    const qreal scale = qMin(largestScale, qMin(room.width() / bounds.width(), room.height() / bounds.height()));
    Sketch result;
    const Sketch::Placed middle(result,
                                QTransform().scale(scale, scale).translate(-bounds.center().x(), -bounds.center().y()));
    result.add(letters);
    return result;
}

} // namespace kovalin::drawing
