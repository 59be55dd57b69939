#include "kovalin-backend/drawing/Motifs.h"

#include "kovalin-backend/drawing/Named.h"
#include "kovalin-backend/drawing/Shapes.h"

#include <array>
#include <cstddef>

namespace kovalin::drawing {

namespace {

/// Places round the figure, none of them where hands or hats usually are.
struct Spot {
    qreal x;
    qreal y;
    qreal size;
    qreal turn; // degrees
};

constexpr std::array<Spot, 9> spots{{
    {-116, -62, 1.0, -16},
    {118, -74, 0.85, 14},
    {-124, 34, 0.7, 12},
    {126, 22, 0.95, -10},
    {-84, -112, 0.65, 8},
    {84, -118, 0.6, -12},
    {-112, 96, 0.85, -8},
    {116, 92, 0.7, 16},
    {138, -26, 0.45, 0},
}};

template <typename Draw>
void scatter(Sketch& sketch, const Draw& draw)
{
    for (std::size_t i = 0; i < spots.size(); ++i) {
        const Sketch::Placed placed(sketch, at(spots[i].x, spots[i].y, spots[i].turn, spots[i].size));
        draw(i);
    }
}

const QColor& alternate(const Palette& palette, std::size_t i)
{
    return i % 2 == 0 ? palette.main : palette.accent;
}

void drawDisc(Sketch& sketch, const Palette& palette)
{
    sketch.plate(circle(0, 0, 126), palette.soft);
}

void drawRingedDisc(Sketch& sketch, const Palette& palette)
{
    sketch.plate(circle(0, 0, 126), palette.soft);
    sketch.line(circle(0, 0, 108), 7, colours::paper);
}

void drawRays(Sketch& sketch, const Palette& palette)
{
    const QPainterPath disc = circle(0, 0, 126);
    sketch.plate(disc, palette.soft);
    const Sketch::Clipped clipped(sketch, disc);
    constexpr int rays = 12;
    for (int i = 0; i < rays; ++i) {
        sketch.flat(at(0, 0, 360.0 * i / rays).map(path("M0 0L-17 -140H17Z")),
                    mixed(palette.soft, palette.main, 0.38F));
    }
}

void drawBurst(Sketch& sketch, const Palette& palette)
{
    sketch.plate(star(0, 0, 18, 142, 112), palette.main);
    sketch.flat(star(0, 0, 18, 124, 98), palette.soft);
}

void drawBlob(Sketch& sketch, const Palette& palette)
{
    sketch.plate(
        path("M-122 -10C-134 -70 -84 -122 -30 -110C6 -102 32 -132 78 -106C126 -80 138 -20 122 30C110 78 86 116 26 118"
             "C-26 122 -110 112 -122 -10Z"),
        palette.soft);
}

void drawHeartPlate(Sketch& sketch, const Palette& palette)
{
    sketch.plate(heart(0, 14, 290), palette.soft);
    sketch.line(heart(0, 12, 250), 6, colours::paper);
}

void drawStarPlate(Sketch& sketch, const Palette& palette)
{
    sketch.plate(star(0, 4, 5, 160, 98), palette.soft);
}

void drawCloudPlate(Sketch& sketch, const Palette& palette)
{
    sketch.plate(cloud(0, 6, 300), palette.soft);
}

void drawNightSky(Sketch& sketch, const Palette& palette)
{
    const QPainterPath disc = circle(0, 0, 128);
    sketch.plate(disc, palette.soft);
    for (const Spot& spot : {Spot{-82, -70, 11, 0},
                             {70, -92, 9, 20},
                             {104, -34, 13, 0},
                             {-108, 6, 9, 10},
                             {-40, -112, 8, 0},
                             {100, 50, 9, 0},
                             {-92, 68, 11, 12},
                             {24, -118, 6, 0}}) {
        sketch.flat(star(spot.x, spot.y, 5, spot.size, spot.size * 0.45, spot.turn), palette.main);
    }
}

void drawStripes(Sketch& sketch, const Palette& palette)
{
    const QPainterPath disc = box(-118, -112, 236, 226, 44);
    sketch.plate(disc, palette.soft);
    const Sketch::Clipped clipped(sketch, disc);
    for (int i = -6; i <= 6; ++i) {
        sketch.line(segment({i * 44.0 - 130, 130}, {i * 44.0 + 130, -130}), 14,
                    mixed(palette.soft, colours::paper, 0.45F));
    }
}

void drawDots(Sketch& sketch, const Palette& palette)
{
    const QPainterPath disc = circle(0, 0, 126);
    sketch.plate(disc, palette.soft);
    const Sketch::Clipped clipped(sketch, disc);
    for (int row = -5; row <= 5; ++row) {
        for (int column = -5; column <= 5; ++column) {
            sketch.flat(circle(column * 28.0 + (row % 2 == 0 ? 0 : 14), row * 25.0, 6.5),
                        mixed(palette.soft, palette.main, 0.35F));
        }
    }
}

void drawRainbow(Sketch& sketch, const Palette&)
{
    constexpr std::array<QColor, 5> bands{
        {{0xFF, 0x7A, 0x7A}, {0xFF, 0xB8, 0x5C}, {0xFF, 0xE2, 0x6B}, {0x7F, 0xDC, 0x9C}, {0x7C, 0xC4, 0xFF}}};
    qreal radius = 136;
    for (const QColor& band : bands) {
        QPainterPath arch = arc(0, 40, radius, 180, 180);
        arch.closeSubpath();
        sketch.plate(arch, band);
        radius -= 15;
    }
    sketch.flat(path("M-61 40C-61 -42 61 -42 61 40Z"), colours::paper);
}

void scatterHearts(Sketch& sketch, const Palette& palette)
{
    scatter(sketch,
            [&](std::size_t i) { sketch.shape(heart(0, 0, 40), i % 3 == 1 ? palette.accent : palette.main, 4); });
}

void scatterSparkles(Sketch& sketch, const Palette& palette)
{
    scatter(sketch, [&](std::size_t i) { sketch.shape(sparkle(0, 0, 48), alternate(palette, i), 3.6); });
}

void scatterStars(Sketch& sketch, const Palette& palette)
{
    scatter(sketch, [&](std::size_t i) { sketch.shape(star(0, 0, 5, 24, 11), alternate(palette, i), 4); });
}

void scatterConfetti(Sketch& sketch, const Palette& palette)
{
    const std::array<QColor, 4> colors{palette.main, palette.accent, QColor(colours::sky), QColor(colours::green)};
    scatter(sketch, [&](std::size_t i) {
        const QColor& color = colors[i % colors.size()];
        const QColor& other = colors[(i + 1) % colors.size()];
        sketch.shape(box(-12, -7, 24, 14, 3), color, 3.4);
        sketch.shape(circle(22, 22, 7), other, 3);
        if (i % 2 == 0) {
            sketch.limb(path("M-26 -8C-34 0 -22 6 -30 14C-36 20 -28 26 -28 26"), 8, colors[(i + 2) % colors.size()], 3);
        }
    });
}

void scatterDrops(Sketch& sketch, const Palette&)
{
    scatter(sketch, [&](std::size_t) { sketch.shape(drop(0, 0, 32), colours::water, 3.6); });
}

void scatterNotes(Sketch& sketch, const Palette& palette)
{
    scatter(sketch, [&](std::size_t i) {
        if (i % 2 == 0) {
            sketch.blob({{ellipse(-6, 16, 10, 8)}, {path("M2 14V-20C8 -8 16 -10 16 0"), 7}}, palette.main, 3.4);
        } else {
            sketch.blob({{ellipse(-14, 16, 9, 7)}, {ellipse(14, 12, 9, 7)}, {path("M-7 14V-18L21 -22V10"), 7}},
                        palette.accent, 3.4);
        }
    });
}

void scatterSnow(Sketch& sketch, const Palette&)
{
    scatter(sketch, [&](std::size_t) {
        const QPainterPath flake = path("M0 -20V20M-17 -10L17 10M17 -10L-17 10M-6 -17L0 -11L6 -17M-6 17L0 11L6 17");
        sketch.limb(flake, 8, colours::water, 3.6);
    });
}

void scatterBubbles(Sketch& sketch, const Palette&)
{
    scatter(sketch, [&](std::size_t) {
        sketch.shape(circle(0, 0, 19), QColor(0xDD, 0xF3, 0xFF), 3.4);
        sketch.line(path("M-10 -3Q-9 -10 -2 -11"), 3, colours::paper);
    });
}

void scatterBolts(Sketch& sketch, const Palette& palette)
{
    scatter(sketch,
            [&](std::size_t i) { sketch.shape(path("M6 -28L-14 4H0L-6 28L16 -6H2Z"), alternate(palette, i), 3.8); });
}

void scatterPetals(Sketch& sketch, const Palette& palette)
{
    scatter(sketch, [&](std::size_t i) {
        std::vector<Sketch::Piece> petals;
        for (int petal = 0; petal < 5; ++petal) {
            const QPointF middle = at(0, 0, 72.0 * petal).map(QPointF(0, -12));
            petals.push_back({circle(middle.x(), middle.y(), 9.5)});
        }
        sketch.blob(petals, alternate(palette, i), 3.6);
        sketch.flat(circle(0, 0, 6.5), colours::cream);
    });
}

void scatterLeaves(Sketch& sketch, const Palette& palette)
{
    scatter(sketch, [&](std::size_t i) {
        sketch.shape(path("M0 -26C22 -14 20 14 0 24C-20 14 -22 -14 0 -26Z"), alternate(palette, i), 3.8);
        sketch.line(path("M0 -14V32M0 2L9 -6M0 8L-9 0"), 2.8);
    });
}

void scatterCoins(Sketch& sketch, const Palette&)
{
    scatter(sketch, [&](std::size_t) {
        sketch.shape(circle(0, 0, 20), colours::yellow, 4);
        sketch.line(circle(0, 0, 12.5), 2.6, colours::orange);
    });
}

/// Short strokes that point at the figure.
void drawAttention(Sketch& sketch, const Palette& palette)
{
    for (const qreal angle : {-66.0, -44.0, -22.0, 22.0, 44.0, 66.0}) {
        const Sketch::Placed placed(sketch, at(0, -8, angle));
        sketch.limb(segment({0, -122}, {0, angle > -30 && angle < 30 ? -140.0 : -150.0}), 13, palette.main, 4);
    }
}

void drawSpeed(Sketch& sketch, const Palette& palette)
{
    for (const Spot& spot : {Spot{-92, -40, 44, 0}, {-104, -6, 56, 0}, {-96, 34, 40, 0}, {-108, 70, 48, 0}}) {
        sketch.limb(segment({spot.x - spot.size, spot.y}, {spot.x, spot.y}), 12, palette.main, 4);
    }
}

constexpr std::array<Motif, 26> motifs{{
    {"disc", drawDisc},           {"ring", drawRingedDisc},
    {"rays", drawRays},           {"burst", drawBurst},
    {"blob", drawBlob},           {"heart", drawHeartPlate},
    {"star", drawStarPlate},      {"cloud", drawCloudPlate},
    {"night", drawNightSky},      {"stripes", drawStripes},
    {"dots", drawDots},           {"rainbow", drawRainbow},
    {"hearts", scatterHearts},    {"sparkles", scatterSparkles},
    {"stars", scatterStars},      {"confetti", scatterConfetti},
    {"drops", scatterDrops},      {"notes", scatterNotes},
    {"snow", scatterSnow},        {"bubbles", scatterBubbles},
    {"bolts", scatterBolts},      {"petals", scatterPetals},
    {"leaves", scatterLeaves},    {"coins", scatterCoins},
    {"attention", drawAttention}, {"speed", drawSpeed},
}};

} // namespace

const Motif* motifNamed(std::string_view name)
{
    return findNamed(motifs, name);
}

} // namespace kovalin::drawing
