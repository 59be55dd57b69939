#include "support/PictureDifference.h"

#include <QtGui/QColor>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

namespace kovalin::test {

namespace {

constexpr int flatTolerance = 4; // levels of 255
constexpr int edgeShare = 4;     // a quarter of the contrast
constexpr int maxInBlock = 4;
constexpr qsizetype pixelsPerAllowed = 1000;
/// Blocks are two cells wide and high, and begin at every cell: a cluster doesn't hide on the border between two of
/// them.
constexpr int cellSide = 4; // pixels

std::array<int, 3> channelsOf(QRgb pixel)
{
    return {qRed(pixel), qGreen(pixel), qBlue(pixel)};
}

QRgb pixelAt(const QImage& picture, int x, int y)
{
    return reinterpret_cast<const QRgb*>(picture.constScanLine(y))[x];
}

/// By how much each channel may be off.
std::array<int, 3> toleranceAt(const QImage& expected, int x, int y)
{
    std::array<int, 3> lowest = {255, 255, 255};
    std::array<int, 3> highest = {};
    for (int row = std::max(y - 1, 0); row <= std::min(y + 1, expected.height() - 1); ++row) {
        for (int column = std::max(x - 1, 0); column <= std::min(x + 1, expected.width() - 1); ++column) {
            const auto channels = channelsOf(pixelAt(expected, column, row));
            for (std::size_t i = 0; i < channels.size(); ++i) {
                lowest[i] = std::min(lowest[i], channels[i]);
                highest[i] = std::max(highest[i], channels[i]);
            }
        }
    }
    std::array<int, 3> tolerance = {};
    for (std::size_t i = 0; i < tolerance.size(); ++i) {
        tolerance[i] = std::max(flatTolerance, (highest[i] - lowest[i]) / edgeShare);
    }
    return tolerance;
}

bool differsAt(const QImage& actual, const QImage& expected, int x, int y)
{
    const QRgb actualPixel = pixelAt(actual, x, y);
    const QRgb expectedPixel = pixelAt(expected, x, y);
    if (actualPixel == expectedPixel) {
        return false;
    }
    const auto actualChannels = channelsOf(actualPixel);
    const auto expectedChannels = channelsOf(expectedPixel);
    const auto tolerance = toleranceAt(expected, x, y);
    for (std::size_t i = 0; i < tolerance.size(); ++i) {
        if (std::abs(actualChannels[i] - expectedChannels[i]) > tolerance[i]) {
            return true;
        }
    }
    return false;
}

QRgb paleOf(QRgb pixel)
{
    const int level = 192 + qGray(pixel) / 4;
    return qRgb(level, level, level);
}

/// How many pixels differ in each cell.
class Cells final {
public:
    explicit Cells(const QSize& picture)
        : _columns(picture.width() / cellSide + 1)
        , _rows(picture.height() / cellSide + 1)
        , _counts(static_cast<std::size_t>(_columns) * static_cast<std::size_t>(_rows))
    {
    }

    void add(int x, int y) { ++_counts[place(x / cellSide, y / cellSide)]; }

    void findWorstBlock(PictureDifference& difference) const
    {
        for (int row = 0; row < _rows; ++row) {
            for (int column = 0; column < _columns; ++column) {
                const int count = at(column, row) + at(column + 1, row) + at(column, row + 1) + at(column + 1, row + 1);
                if (count > difference.mostInBlock) {
                    difference.mostInBlock = count;
                    difference.worstBlock = QPoint(column, row) * cellSide;
                }
            }
        }
    }

private:
    [[nodiscard]] std::size_t place(int column, int row) const
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(_columns) + static_cast<std::size_t>(column);
    }
    [[nodiscard]] int at(int column, int row) const
    {
        return column < _columns && row < _rows ? _counts[place(column, row)] : 0;
    }

    int _columns;
    int _rows;
    std::vector<int> _counts;
};

} // namespace

PictureDifference PictureDifference::of(const QImage& actual, const QImage& expected)
{
    Q_ASSERT(actual.size() == expected.size());
    const QImage actualPixels = actual.convertToFormat(QImage::Format_RGB32);
    const QImage expectedPixels = expected.convertToFormat(QImage::Format_RGB32);
    PictureDifference difference;
    difference.allowedPixels = qsizetype(expected.width()) * expected.height() / pixelsPerAllowed;
    difference.picture = QImage(expected.size(), QImage::Format_RGB32);
    Cells cells(expected.size());
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            const bool differs = differsAt(actualPixels, expectedPixels, x, y);
            difference.picture.setPixel(x, y, differs ? qRgb(255, 0, 0) : paleOf(pixelAt(expectedPixels, x, y)));
            if (differs) {
                ++difference.pixels;
                cells.add(x, y);
            }
        }
    }
    cells.findWorstBlock(difference);
    return difference;
}

bool PictureDifference::isTolerable() const
{
    return mostInBlock <= maxInBlock && pixels <= allowedPixels;
}

} // namespace kovalin::test
