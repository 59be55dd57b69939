#include "kovalin-backend/drawing/Props.h"
#include "kovalin-backend/drawing/Shapes.h"

#include <array>

namespace kovalin::drawing {

namespace {

using Place = Prop::Place;

void onBothSides(Sketch& sketch, const auto& draw)
{
    draw();
    const Sketch::Placed placed(sketch, mirrored());
    draw();
}

void drawPartyHat(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(14, -62, 12));
    const QPainterPath hat = path("M-34 4Q0 14 34 4L0 -68Z");
    sketch.shape(hat, colours::sky);
    {
        const Sketch::Clipped clipped(sketch, hat);
        sketch.line(path("M-40 -14L20 -34M-40 8L34 -18M-10 14L44 -2"), 8, colours::yellow);
    }
    sketch.line(hat, Sketch::bold);
    sketch.shape(circle(0, -70, 12), colours::red);
}

void drawCrown(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -66));
    sketch.shape(path("M-42 6L-50 -44L-24 -22L0 -56L24 -22L50 -44L42 6Q0 18 -42 6Z"), colours::yellow);
    sketch.flat(circle(0, -10, 7), colours::red);
    sketch.flat(circle(-24, -8, 5), colours::sky);
    sketch.flat(circle(24, -8, 5), colours::sky);
}

void drawSantaHat(Sketch& sketch)
{
    sketch.shape(path("M-58 -38C-52 -92 4 -116 50 -92C74 -78 84 -52 80 -34C70 -50 62 -56 54 -58L58 -38Z"),
                 colours::red);
    sketch.shape(box(-66, -50, 132, 26, 13), colours::paper);
    sketch.shape(circle(80, -28, 15), colours::paper);
}

void drawBunnyEars(Sketch& sketch)
{
    onBothSides(sketch, [&] {
        const Sketch::Placed placed(sketch, at(26, -62, 12));
        sketch.shape(path("M-15 8C-24 -40 -16 -78 0 -80C16 -78 24 -40 15 8Z"), colours::paper);
        sketch.flat(path("M-7 2C-12 -36 -8 -64 0 -66C8 -64 12 -36 7 2Z"), colours::pink);
    });
}

void drawWitchHat(Sketch& sketch)
{
    sketch.shape(path("M-50 -50C-34 -76 -26 -110 14 -132C10 -116 40 -104 30 -100C36 -84 44 -66 50 -50Z"),
                 QColor(0x5C, 0x4A, 0x9A));
    sketch.line(path("M-42 -60Q0 -46 44 -60"), 12, colours::orange);
    sketch.shape(path("M-92 -40C-60 -62 60 -62 92 -40C60 -26 -60 -26 -92 -40Z"), QColor(0x5C, 0x4A, 0x9A));
}

void drawGraduateCap(Sketch& sketch)
{
    sketch.shape(path("M-46 -46V-74H46V-46Q0 -30 -46 -46Z"), colours::navy);
    sketch.shape(path("M0 -112L84 -80L0 -54L-84 -80Z"), colours::navy);
    sketch.line(path("M0 -82L62 -74V-44"), 4, colours::yellow);
    sketch.shape(path("M55 -46H69L72 -24H52Z"), colours::yellow, Sketch::fine);
}

void drawChefHat(Sketch& sketch)
{
    sketch.blob({{circle(-34, -92, 26)}, {circle(34, -92, 26)}, {circle(0, -106, 30)}, {box(-44, -92, 88, 50, 6)}},
                colours::paper);
    sketch.line(path("M-42 -56Q0 -48 42 -56M-18 -68V-82M18 -68V-82"));
}

void drawHalo(Sketch& sketch)
{
    sketch.limb(ellipse(0, -98, 40, 12), 13, colours::yellow);
}

void drawDevilHorns(Sketch& sketch)
{
    onBothSides(sketch,
                [&] { sketch.shape(path("M24 -66C44 -66 48 -88 42 -106C66 -92 70 -62 48 -48Z"), colours::red); });
}

void drawHeadphones(Sketch& sketch)
{
    sketch.limb(path("M-64 0C-70 -104 70 -104 64 0"), 14, colours::teal);
    onBothSides(sketch, [&] { sketch.shape(box(50, -16, 24, 46, 11), colours::teal); });
}

void drawSunglasses(Sketch& sketch)
{
    sketch.line(path("M-46 0L-58 -4M46 0L58 -4"), 5);
    onBothSides(sketch, [&] {
        sketch.shape(path("M3 -8H47C50 14 42 28 26 28C10 28 3 14 3 -8Z"), colours::ink, Sketch::fine);
        sketch.line(segment({14, 14}, {27, -1}), 4.4, colours::sky);
        sketch.line(segment({25, 17}, {33, 7}), 3.4, colours::sky);
    });
    sketch.line(segment({-10, -6}, {10, -6}), 6);
}

void drawHeartGlasses(Sketch& sketch)
{
    onBothSides(sketch, [&] {
        sketch.shape(heart(25, 9, 48), colours::red);
        sketch.line(segment({14, 8}, {24, -4}), 4, colours::paper);
    });
    sketch.line(segment({-5, 2}, {5, 2}), 5);
}

void drawNightcap(Sketch& sketch)
{
    const QPainterPath cap = path("M-58 -34C-56 -88 10 -110 60 -76C84 -58 92 -30 88 -8C78 -28 66 -40 54 -46L58 -34Z");
    sketch.shape(cap, colours::navy);
    for (const QPointF& dot : {QPointF(-26, -58), {4, -76}, {30, -58}, {60, -50}}) {
        sketch.flat(star(dot.x(), dot.y(), 5, 7, 3.2), colours::yellow);
    }
    sketch.shape(box(-65, -46, 130, 22, 11), colours::lilac);
    sketch.shape(circle(87, -4, 13), colours::lilac);
}

void drawCowboyHat(Sketch& sketch)
{
    sketch.shape(path("M-46 -48C-48 -86 -36 -108 -18 -100Q0 -92 18 -100C36 -108 48 -86 46 -48Z"), colours::brown);
    sketch.line(path("M-46 -58Q0 -46 46 -58"), 9, colours::darkBrown);
    sketch.shape(path("M-96 -62C-84 -26 84 -26 96 -62C84 -50 60 -48 46 -48Q0 -40 -46 -48C-60 -48 -84 -50 -96 -62Z"),
                 colours::brown);
}

void drawCatEars(Sketch& sketch)
{
    onBothSides(sketch, [&] {
        sketch.shape(path("M16 -66C26 -84 40 -98 52 -102C60 -84 60 -64 54 -46Z"), colours::darkGrey);
        sketch.flat(path("M28 -68C34 -78 42 -86 48 -90C52 -78 52 -66 49 -56Z"), colours::pink);
        sketch.line(path("M40 28L62 24M41 36L62 38"), 2.8);
    });
}

void drawFlowerCrown(Sketch& sketch)
{
    sketch.limb(path("M-58 -34C-40 -62 40 -62 58 -34"), 11, colours::green, 3.4);
    for (const auto& [x, y, colour] : {std::tuple{-46.0, -46.0, colours::pink},
                                       {-24.0, -58.0, colours::yellow},
                                       {0.0, -62.0, colours::red},
                                       {24.0, -58.0, colours::paper},
                                       {46.0, -46.0, colours::violet}}) {
        std::vector<Sketch::Piece> petals;
        for (int i = 0; i < 5; ++i) {
            const QPointF middle = at(x, y, 72.0 * i).map(QPointF(0, -8));
            petals.push_back({circle(middle.x(), middle.y(), 6.5)});
        }
        sketch.blob(petals, colour, Sketch::fine);
        sketch.flat(circle(x, y, 4.5), colours::cream);
    }
}

void drawMask(Sketch& sketch)
{
    sketch.line(path("M-38 26L-58 4M38 26L58 4M-34 50L-56 18M34 50L56 18"), Sketch::fine, colours::grey);
    sketch.shape(path("M-40 22Q0 8 40 22C42 48 24 60 0 61C-24 60 -42 48 -40 22Z"), colours::water);
    sketch.line(path("M-26 30Q0 24 26 30M-27 40Q0 35 27 40"), 2.6, colours::sky);
}

void drawThermometer(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(14, 44, 58));
    sketch.limb(segment({0, 0}, {0, -52}), 13, colours::paper, 3.6);
    sketch.line(segment({0, 0}, {0, -32}), 4, colours::red);
    sketch.shape(circle(0, -54, 8), colours::paper, Sketch::fine);
}

void drawAntlers(Sketch& sketch)
{
    onBothSides(sketch, [&] { sketch.limb(path("M26 -64Q30 -92 50 -110M34 -86Q50 -84 62 -92"), 13, colours::brown); });
    sketch.shape(circle(0, 22, 10), colours::red, Sketch::fine);
    sketch.flat(circle(3, 18, 3), colours::paper);
}

constexpr std::array<Prop, 19> props{{
    {"party-hat", Place::OnHead, drawPartyHat, {}, false, true},
    {"crown", Place::OnHead, drawCrown, {}, false, true},
    {"santa-hat", Place::OnHead, drawSantaHat, {}, false, true},
    {"bunny-ears", Place::OnHead, drawBunnyEars},
    {"witch-hat", Place::OnHead, drawWitchHat, {}, false, true},
    {"graduate-cap", Place::OnHead, drawGraduateCap, {}, false, true},
    {"chef-hat", Place::OnHead, drawChefHat, {}, false, true},
    {"halo", Place::OnHead, drawHalo},
    {"devil-horns", Place::OnHead, drawDevilHorns},
    {"headphones", Place::OnHead, drawHeadphones},
    {"sunglasses", Place::OnHead, drawSunglasses},
    {"heart-glasses", Place::OnHead, drawHeartGlasses},
    {"nightcap", Place::OnHead, drawNightcap, {}, false, true},
    {"cowboy-hat", Place::OnHead, drawCowboyHat, {}, false, true},
    {"cat-ears", Place::OnHead, drawCatEars},
    {"flower-crown", Place::OnHead, drawFlowerCrown, {}, false, true},
    {"mask", Place::OnHead, drawMask},
    {"thermometer", Place::OnHead, drawThermometer},
    {"antlers", Place::OnHead, drawAntlers},
}};

} // namespace

std::span<const Prop> wornProps()
{
    return props;
}

} // namespace kovalin::drawing
