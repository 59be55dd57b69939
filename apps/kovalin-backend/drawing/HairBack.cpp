#include "kovalin-backend/drawing/HairShapes.h"
#include "kovalin-backend/drawing/Shapes.h"

namespace kovalin::drawing {

namespace {

void onBothSides(Sketch& sketch, const auto& draw)
{
    draw();
    const Sketch::Placed placed(sketch, mirrored());
    draw();
}

void drawAfro(Sketch& sketch, const QColor& colour)
{
    std::vector<Sketch::Piece> curls{{ellipse(0, -18, 70, 62)}};
    for (const QPointF& curl : {QPointF(0, -78),
                                {-30, -72},
                                {30, -72},
                                {-54, -52},
                                {54, -52},
                                {-69, -24},
                                {69, -24},
                                {-70, 4},
                                {70, 4},
                                {-60, 28},
                                {60, 28}}) {
        curls.push_back({circle(curl.x(), curl.y(), 20)});
    }
    sketch.blob(curls, colour);
}

void drawWaves(Sketch& sketch, const QColor& colour)
{
    sketch.shape(path("M-40 -66C-76 -58 -70 -20 -72 6C-74 24 -84 34 -78 52C-74 64 -82 76 -74 92C-66 106 -40 102 -34 88"
                      "L34 88C40 102 66 106 74 92C82 76 74 64 78 52C84 34 74 24 72 6C70 -20 76 -58 40 -66Z"),
                 colour);
    onBothSides(sketch, [&] { sketch.line(path("M60 20C58 38 68 50 64 70"), Sketch::fine, shaded(colour, 0.75)); });
}

void drawPigtail(Sketch& sketch, const AvatarLook& look)
{
    sketch.shape(path("M56 -30C84 -44 104 -20 100 10C98 34 88 46 78 54C80 38 70 24 64 10C60 0 54 -16 56 -30Z"),
                 look.hairColour);
    sketch.line(path("M76 -22C88 -8 90 12 84 32"), Sketch::fine, shaded(look.hairColour, 0.75));
    sketch.shape(ellipse(61, -20, 8, 11), look.extraColour, Sketch::fine);
}

void drawLocs(Sketch& sketch, const QColor& colour)
{
    std::vector<Sketch::Piece> strands;
    for (const qreal x : {-66.0, -52.0, 52.0, 66.0}) {
        strands.push_back({polyline({{x * 0.8, -40}, {x, 4}, {x * 1.02, 80}}), 17});
    }
    sketch.blob(strands, colour);
    for (const qreal x : {-60.0, 60.0}) {
        sketch.line(segment({x, -6}, {x * 1.01, 76}), Sketch::fine, shaded(colour, 0.7));
    }
}

} // namespace

void drawHairBack(Sketch& sketch, const AvatarLook& look)
{
    const QColor& colour = look.hairColour;
    switch (look.hair) {
    case Hair::Bob:
        return sketch.shape(
            path("M-44 -62C-78 -52 -72 0 -72 34C-72 54 -62 60 -40 58L40 58C62 60 72 54 72 34C72 0 78 -52 44 -62Z"),
            colour);
    case Hair::LongStraight:
        return sketch.shape(
            path("M-44 -62C-76 -52 -70 -8 -70 24L-74 98C-60 106 -44 104 -34 98L34 98C44 104 60 106 74 98"
                 "L70 24C70 -8 76 -52 44 -62Z"),
            colour);
    case Hair::LongWaves:
        return drawWaves(sketch, colour);
    case Hair::Afro:
        return drawAfro(sketch, colour);
    case Hair::TopBun:
        sketch.shape(circle(0, -86, 24), colour);
        return sketch.line(path("M-12 -94Q0 -104 12 -92M-8 -84Q4 -88 8 -78"), Sketch::fine, shaded(colour, 0.72));
    case Hair::SpaceBuns:
        return onBothSides(sketch, [&] {
            sketch.shape(circle(48, -66, 23), colour);
            sketch.line(path("M40 -76Q54 -84 62 -68M46 -66Q54 -70 56 -60"), Sketch::fine, shaded(colour, 0.72));
        });
    case Hair::Ponytail:
        sketch.shape(path("M30 -70C66 -96 108 -70 102 -20C98 16 84 34 86 58C66 46 60 22 64 -6C66 -26 54 -40 38 -46Z"),
                     colour);
        sketch.line(path("M66 -66C88 -50 84 -14 78 14"), Sketch::fine, shaded(colour, 0.72));
        return sketch.shape(ellipse(42, -60, 10, 13), look.extraColour, Sketch::fine);
    case Hair::Pigtails:
        return onBothSides(sketch, [&] { drawPigtail(sketch, look); });
    case Hair::Locs:
        return drawLocs(sketch, colour);
    case Hair::SideSwept:
        return sketch.shape(path("M-30 -66C-66 -60 -68 -24 -66 10C-66 28 -58 36 -46 38L20 60C34 84 52 100 74 96"
                                 "C84 66 72 40 70 8C70 -30 70 -56 30 -66Z"),
                            colour);
    case Hair::Scarf:
        return sketch.shape(
            path("M-50 -50C-74 -20 -74 30 -66 62C-58 88 -34 96 0 96C34 96 58 88 66 62C74 30 74 -20 50 -50Z"),
            look.clothesAccent == colours::paper ? look.extraColour : look.clothesAccent);
    default:
        return;
    }
}

} // namespace kovalin::drawing
