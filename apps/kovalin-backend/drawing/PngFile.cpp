#include "kovalin-backend/drawing/PngFile.h"

#include <QtCore/QBuffer>
#include <QtGui/QImageWriter>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace kovalin::drawing {

namespace {

constexpr std::size_t mostColours = 256; // of an indexed PNG
constexpr std::size_t exactColours = 96; // of them, the most frequent ones, the areas of a drawing

struct Count {
    QRgb colour;
    std::uint32_t pixels;
};

/// The colours of a picture, and for each pixel the place of its own among them.
struct Colours {
    std::vector<Count> counts;
    std::vector<std::uint32_t> places;
};

Colours coloursOf(const QImage& image)
{
    constexpr std::size_t usualColours = 1U << 14; // smoothed edges make most of them
    Colours colours;
    std::unordered_map<QRgb, std::uint32_t> placeOf;
    placeOf.reserve(usualColours);
    colours.places.reserve(static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height()));
    const int width = image.width();
    for (int y = 0; y < image.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < width; ++x) {
            std::uint32_t place = 0;
            if (x > 0 && line[x] == line[x - 1]) {
                place = colours.places.back();
            } else {
                const auto [entry, isNew] =
                    placeOf.try_emplace(line[x], static_cast<std::uint32_t>(colours.counts.size()));
                if (isNew) {
                    colours.counts.push_back({line[x], 0});
                }
                place = entry->second;
            }
            ++colours.counts[place].pixels;
            colours.places.push_back(place);
        }
    }
    return colours;
}

/// The mean of colours that look alike.
struct Bucket {
    std::uint64_t pixels = 0;
    std::array<std::uint64_t, 4> sums{}; // of alpha, red, green, blue, times pixels

    void add(const Count& count)
    {
        pixels += count.pixels;
        const std::array<int, 4> parts{qAlpha(count.colour), qRed(count.colour), qGreen(count.colour),
                                       qBlue(count.colour)};
        for (std::size_t i = 0; i < parts.size(); ++i) {
            sums[i] += static_cast<std::uint64_t>(parts[i]) * count.pixels;
        }
    }

    [[nodiscard]] QRgb mean() const
    {
        const auto part = [&](std::size_t i) {
            return static_cast<int>((sums[i] + pixels / 2) / pixels);
        };
        return qRgba(part(1), part(2), part(3), part(0));
    }
};

/// The upper bits of the four parts: what counts as alike.
constexpr int bucketBits = 3;

std::size_t bucketOf(QRgb colour)
{
    const auto part = [](int value) {
        return static_cast<std::size_t>(value) >> (8 - bucketBits);
    };
    return ((part(qAlpha(colour)) << bucketBits | part(qRed(colour))) << bucketBits | part(qGreen(colour)))
               << bucketBits |
           part(qBlue(colour));
}

/// The most frequent colours as they are, and means for the others.
QList<QRgb> colourTable(std::vector<Count> counts)
{
    const std::size_t exact = counts.size() <= mostColours ? counts.size() : exactColours;
    const auto rest = counts.begin() + static_cast<std::ptrdiff_t>(exact);
    std::partial_sort(counts.begin(), rest, counts.end(), [](const Count& one, const Count& other) {
        return one.pixels != other.pixels ? one.pixels > other.pixels : one.colour < other.colour;
    });
    QList<QRgb> table;
    std::for_each(counts.begin(), rest, [&](const Count& count) { table.append(count.colour); });
    std::vector<Bucket> buckets(std::size_t{1} << (4 * bucketBits));
    std::for_each(rest, counts.end(), [&](const Count& count) { buckets[bucketOf(count.colour)].add(count); });
    std::erase_if(buckets, [](const Bucket& bucket) { return bucket.pixels == 0; });
    std::stable_sort(buckets.begin(), buckets.end(),
                     [](const Bucket& one, const Bucket& other) { return one.pixels > other.pixels; });
    buckets.resize(std::min(buckets.size(), mostColours - exact));
    for (const Bucket& bucket : buckets) {
        table.append(bucket.mean());
    }
    return table;
}

/// Finds the nearest of a table's colours; once for all that differ in their lowest bits only, unless they are in the table.
class Nearest final {
public:
    explicit Nearest(const QList<QRgb>& table)
        : _table(table)
    {
        for (qsizetype i = 0; i < table.size(); ++i) {
            _found.emplace(table[i], static_cast<uchar>(i));
        }
    }

    [[nodiscard]] uchar operator()(QRgb colour)
    {
        if (const auto found = _found.find(colour); found != _found.end()) {
            return found->second;
        }
        constexpr QRgb upperBits = 0xF8F8F8F8;
        const auto [entry, isNew] = _alike.try_emplace(colour & upperBits, uchar{0});
        if (isNew) {
            entry->second = search(colour);
        }
        return entry->second;
    }

private:
    [[nodiscard]] uchar search(QRgb colour) const
    {
        const auto nearer = [colour](QRgb one, QRgb other) {
            return between(one, colour) < between(other, colour);
        };
        return static_cast<uchar>(std::min_element(_table.cbegin(), _table.cend(), nearer) - _table.cbegin());
    }

    /// Transparency counts most: a wrong one shows at the picture's edge on every ground.
    static int between(QRgb one, QRgb other)
    {
        const int alpha = qAlpha(one) - qAlpha(other);
        const int red = qRed(one) - qRed(other);
        const int green = qGreen(one) - qGreen(other);
        const int blue = qBlue(one) - qBlue(other);
        return 4 * alpha * alpha + red * red + 2 * green * green + blue * blue;
    }

    const QList<QRgb>& _table;
    std::unordered_map<QRgb, uchar> _found;
    std::unordered_map<QRgb, uchar> _alike;
};

QImage indexed(const QImage& image)
{
    const Colours colours = coloursOf(image);
    const QList<QRgb> table = colourTable(colours.counts);
    Nearest nearest(table);
    std::vector<uchar> indexOf(colours.counts.size());
    std::transform(colours.counts.begin(), colours.counts.end(), indexOf.begin(),
                   [&](const Count& count) { return nearest(count.colour); });
    QImage result(image.size(), QImage::Format_Indexed8);
    result.setColorTable(table);
    auto place = colours.places.begin();
    for (int y = 0; y < image.height(); ++y) {
        uchar* const line = result.scanLine(y);
        std::for_each(line, line + image.width(), [&](uchar& pixel) { pixel = indexOf[*place++]; });
    }
    return result;
}

} // namespace

QByteArray encodedAsPng(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, QByteArrayLiteral("png"));
    constexpr int quick = 40; // of 100: half the time of the usual compression for a file a twentieth larger
    writer.setCompression(quick);
    writer.write(indexed(image.convertToFormat(QImage::Format_ARGB32)));
    return bytes;
}

} // namespace kovalin::drawing
