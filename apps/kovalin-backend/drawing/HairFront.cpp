#include "kovalin-backend/drawing/HairShapes.h"
#include "kovalin-backend/drawing/Shapes.h"

#include <string>

namespace kovalin::drawing {

namespace {

/// Hair as it lies round the skull; `hairline` leads from the right temple back to the left one.
QPainterPath cap(std::string_view hairline)
{
    return path("M-61 6C-67 -54 -37 -77 0 -77C37 -77 67 -54 61 6" + std::string(hairline) + "Z");
}

void drawStrands(Sketch& sketch, const QColor& colour, std::string_view strands)
{
    sketch.line(path(strands), Sketch::fine, shaded(colour, 0.72));
}

void drawShine(Sketch& sketch, const QColor& colour)
{
    QColor shine = colours::paper;
    shine.setAlpha(colour.lightness() > 150 ? 110 : 60);
    sketch.line(path("M-34 -58C-22 -66 -10 -69 2 -69"), 6, shine);
}

void drawCap(Sketch& sketch, const QColor& colour, std::string_view hairline, std::string_view strands)
{
    sketch.shape(cap(hairline), colour);
    drawStrands(sketch, colour, strands);
    drawShine(sketch, colour);
}

void drawQuiff(Sketch& sketch, const QColor& colour)
{
    sketch.shape(path("M-60 2C-64 -24 -58 -44 -50 -54C-62 -84 -20 -104 18 -96C56 -92 74 -64 58 -40C62 -26 62 -10 60 2"
                      "L53 -6C53 -22 48 -32 40 -38C14 -28 -18 -30 -42 -40C-50 -30 -53 -18 -53 -6Z"),
                 colour);
    drawStrands(sketch, colour, "M-36 -48C-34 -72 -4 -84 22 -80M-8 -44C-2 -62 20 -70 42 -66");
}

void drawSpikes(Sketch& sketch, const QColor& colour)
{
    sketch.shape(
        path("M-60 4C-64 -14 -64 -28 -58 -42L-72 -52L-50 -58L-54 -80L-30 -72L-22 -96L-4 -76L14 -98L24 -74L48 -84"
             "L48 -60L70 -56L58 -42C64 -28 64 -14 60 4L53 -6C52 -16 50 -22 46 -28L34 -20L24 -32L10 -20L-2 -33L-16 -20"
             "L-26 -32L-40 -20L-47 -28C-50 -22 -52 -16 -53 -6Z"),
        colour);
}

void drawCurls(Sketch& sketch, const QColor& colour)
{
    std::vector<Sketch::Piece> curls{{path("M-58 -20C-54 -66 54 -66 58 -20L40 -34C20 -40 -20 -40 -40 -34Z")}};
    for (const QPointF& curl : {QPointF(-58, -12),
                                {-58, -36},
                                {-44, -58},
                                {-20, -70},
                                {6, -72},
                                {32, -66},
                                {52, -48},
                                {59, -24},
                                {58, -4},
                                {-34, -36},
                                {-12, -42},
                                {12, -40},
                                {34, -36}}) {
        curls.push_back({circle(curl.x(), curl.y(), 14)});
    }
    sketch.blob(curls, colour);
    drawStrands(sketch, colour,
                "M-46 -52Q-38 -60 -30 -52M-14 -60Q-4 -68 4 -58M24 -56Q34 -62 40 -52M-56 -26Q-50 -32 -46 -26"
                "M44 -32Q52 -36 54 -28");
}

void drawMohawk(Sketch& sketch, const AvatarLook& look)
{
    QColor sides = look.hairColour;
    sides.setAlpha(90);
    sketch.flat(path("M-55 -4C-56 -40 -34 -60 0 -60C34 -60 56 -40 55 -4C53 -20 50 -26 44 -32C20 -42 -20 -42 -44 -32"
                     "C-50 -26 -53 -20 -55 -4Z"),
                sides);
    sketch.shape(
        path("M-26 -34C-34 -56 -32 -84 -18 -92C-16 -102 4 -110 10 -98C24 -102 32 -86 28 -76C36 -62 32 -46 26 -34"
             "C10 -42 -10 -42 -26 -34Z"),
        look.hairColour);
    drawStrands(sketch, look.hairColour, "M-10 -48C-14 -64 -10 -78 -6 -88M10 -48C12 -62 12 -76 14 -86");
}

void drawAfroLine(Sketch& sketch, const QColor& colour)
{
    std::vector<Sketch::Piece> pieces{{path("M-57 -6C-58 -40 -34 -62 0 -62C34 -62 58 -40 57 -6L46 -24L-46 -24Z")}};
    for (const qreal x : {-42.0, -21.0, 0.0, 21.0, 42.0}) {
        pieces.push_back({circle(x, -34 + qAbs(x) * 0.2, 12)});
    }
    // No outline towards the mass behind: only the line along the forehead.
    sketch.line(
        path("M-56 -6C-54 -18 -52 -22 -46 -22Q-40 -14 -31 -23Q-20 -14 -10 -24Q0 -16 10 -24Q20 -14 31 -23Q40 -14 46 -22"
             "C52 -22 54 -18 56 -6"),
        2 * Sketch::fine);
    for (const Sketch::Piece& piece : pieces) {
        sketch.flat(piece.path, colour);
    }
    drawStrands(sketch, colour,
                "M-40 -66Q-32 -74 -24 -66M6 -78Q16 -84 22 -74M40 -52Q50 -58 54 -48M-62 -34Q-56 -42 -50 -34"
                "M-12 -54Q-4 -60 4 -52");
}

void drawBraid(Sketch& sketch, const AvatarLook& look)
{
    for (int i = 0; i < 5; ++i) {
        const qreal y = 30 + 15.0 * i;
        sketch.shape(at(60 + i, y).map(path("M-11 -9C-12 4 -4 11 0 12C4 11 12 4 11 -9C4 -3 -4 -3 -11 -9Z")),
                     look.hairColour, Sketch::fine);
    }
    sketch.shape(at(65, 106).map(path("M-7 0L7 0L9 16L-9 16Z")), look.hairColour, Sketch::fine);
    sketch.shape(box(57, 97, 16, 9, 4), look.extraColour, Sketch::fine);
}

void drawScarf(Sketch& sketch, const AvatarLook& look)
{
    const QColor colour = look.clothesAccent == colours::paper ? look.extraColour : look.clothesAccent;
    const QColor base = colour == colours::ink ? QColor(colours::violet) : colour;
    QPainterPath ring = path("M-66 6C-72 -54 -40 -80 0 -80C40 -80 72 -54 66 6C64 44 40 74 0 76C-40 74 -64 44 -66 6Z");
    ring.addPath(path("M-50 4C-52 -32 -32 -50 0 -50C32 -50 52 -32 50 4C49 36 28 59 0 59C-28 59 -49 36 -50 4Z"));
    ring.setFillRule(Qt::OddEvenFill);
    sketch.shape(ring, base);
    sketch.line(path("M-44 -52C-24 -66 24 -66 44 -52M-58 30C-50 52 -36 64 -22 68M50 46C44 56 38 60 30 65"),
                Sketch::fine, shaded(base, 0.75));
}

} // namespace

void drawHairFront(Sketch& sketch, const AvatarLook& look)
{
    const QColor& colour = look.hairColour;
    switch (look.hair) {
    case Hair::Crop:
        return drawCap(sketch, colour, "L54 2C54 -12 50 -22 45 -29C22 -22 -10 -26 -28 -42C-34 -30 -50 -24 -54 2",
                       "M-26 -44C-22 -54 -14 -60 -4 -64M-4 -34C8 -36 22 -44 30 -54");
    case Hair::SidePart:
        return drawCap(sketch, colour, "L54 2C55 -14 52 -24 46 -30C30 -26 6 -34 -30 -54C-32 -36 -48 -26 -54 2",
                       "M-30 -54C-30 -64 -26 -70 -20 -73M-4 -48C16 -42 34 -44 46 -52");
    case Hair::Quiff:
        return drawQuiff(sketch, colour);
    case Hair::Spikes:
        return drawSpikes(sketch, colour);
    case Hair::Curls:
        return drawCurls(sketch, colour);
    case Hair::Buzz:
        return sketch.shape(
            path("M-58 2C-62 -44 -36 -66 0 -66C36 -66 62 -44 58 2L53 -2C52 -16 50 -24 44 -30C30 -38 -30 -38 -44 -30"
                 "C-50 -24 -52 -16 -53 -2Z"),
            colour);
    case Hair::Bald: {
        QColor shine = colours::paper;
        shine.setAlpha(90);
        return sketch.line(path("M-30 -46C-22 -54 -12 -57 -2 -57"), 6, shine);
    }
    case Hair::Receding:
        sketch.shape(path("M-58 14C-68 0 -68 -34 -50 -44C-42 -36 -46 -14 -50 8Z"), colour);
        return sketch.shape(path("M58 14C68 0 68 -34 50 -44C42 -36 46 -14 50 8Z"), colour);
    case Hair::Mohawk:
        return drawMohawk(sketch, look);
    case Hair::Bob:
        return drawCap(
            sketch, colour,
            "C60 20 60 26 56 34C52 14 52 -2 48 -19C30 -13 -30 -13 -48 -19C-52 -2 -52 14 -56 34C-60 26 -60 20 -61 6",
            "M-18 -16L-16 -40M16 -16L14 -38M-40 -18L-36 -34M40 -18L36 -34");
    case Hair::Pixie:
        return drawCap(
            sketch, colour,
            "L52 6C54 -8 52 -18 48 -24L38 -12L30 -28L14 -14L2 -32L-14 -18L-24 -34L-40 -16L-46 -24C-52 -16 -53 -8 -52 6",
            "M2 -32C4 -46 10 -56 20 -62M-24 -34C-22 -46 -16 -54 -8 -60");
    case Hair::LongStraight:
        return drawCap(sketch, colour,
                       "C62 20 60 36 58 46C52 26 54 2 46 -14C28 -24 8 -38 0 -54C-8 -38 -28 -24 -46 -14C-54 2 -52 26 "
                       "-58 46C-60 36 -62 20 -61 6",
                       "M0 -54L0 -74M22 -34C34 -26 46 -22 54 -10M-22 -34C-34 -26 -46 -22 -54 -10");
    case Hair::LongWaves:
        return drawCap(sketch, colour,
                       "C64 18 58 30 62 42C50 30 54 4 46 -12C24 -16 -6 -28 -22 -52C-26 -32 -44 -22 -48 -8C-54 8 -50 30 "
                       "-62 42C-58 30 -64 18 -61 6",
                       "M-22 -52C-22 -62 -18 -70 -12 -74M2 -42C18 -34 36 -34 48 -38");
    case Hair::Afro:
        return drawAfroLine(sketch, colour);
    case Hair::TopBun:
    case Hair::SpaceBuns:
    case Hair::Ponytail:
        return drawCap(sketch, colour, "L55 4C54 -16 46 -30 34 -36C14 -44 -14 -44 -34 -36C-46 -30 -54 -16 -55 4",
                       "M-36 -40C-28 -54 -16 -62 -6 -66M36 -40C28 -54 16 -62 6 -66M0 -44L0 -62");
    case Hair::Pigtails:
        return drawCap(sketch, colour,
                       "L54 2C52 -12 48 -20 42 -24C28 -16 10 -18 0 -30C-10 -18 -28 -16 -42 -24C-48 -20 -52 -12 -54 2",
                       "M0 -30L0 -74M20 -24C26 -34 34 -40 44 -44M-20 -24C-26 -34 -34 -40 -44 -44");
    case Hair::Braids:
        drawCap(sketch, colour,
                "C60 16 60 22 57 26C54 8 52 -10 44 -20C26 -26 8 -38 0 -56C-8 -38 -26 -26 -44 -20C-52 -10 -54 8 -57 "
                "26C-60 22 -60 16 -61 6",
                "M0 -56L0 -74M20 -38C32 -30 44 -28 52 -18M-20 -38C-32 -30 -44 -28 -52 -18");
        drawBraid(sketch, look);
        {
            const Sketch::Placed placed(sketch, mirrored());
            drawBraid(sketch, look);
        }
        return;
    case Hair::Locs:
        return drawCap(sketch, colour,
                       "C62 18 62 26 57 30C52 12 54 -6 47 -18L36 -12L30 -26L18 -14L8 -30L-6 -16L-16 -30L-28 -14L-38 "
                       "-26L-47 -18C-54 -6 -52 12 -57 30C-62 26 -62 18 -61 6",
                       "M30 -26L34 -56M8 -30L10 -66M-16 -30L-16 -66M-38 -26L-40 -54");
    case Hair::SideSwept:
        return drawCap(sketch, colour,
                       "C62 20 62 36 58 48C50 30 56 4 48 -12C26 -10 -14 -18 -34 -46C-38 -30 -52 -20 -54 4",
                       "M-34 -46C-32 -58 -26 -66 -18 -72M-12 -34C6 -22 28 -20 48 -26M56 0C60 16 58 30 58 44");
    case Hair::Scarf:
        return drawScarf(sketch, look);
    }
}

} // namespace kovalin::drawing
