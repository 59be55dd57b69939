// kovalin-drawing-sheet: all drawings side by side, to look at.

#include "kovalin-backend/drawing/PngFile.h"
#include "kovalin-backend/drawing/StickerDrawing.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

namespace {

using namespace kovalin::drawing;

struct Options {
    std::string templates;
    std::string out;
    std::vector<std::string> avatars{"ada", "grace", "alan", "edsger"};
    std::vector<std::string> only;
    int size = 160;
    int columns = 8;
    int perSheet = 40;
    bool isDark = false;
    bool isTimed = false;
};

constexpr int gap = 6; // pixels between pictures

void writeSheet(const std::vector<QImage>& pictures, const Options& options, const QString& path)
{
    const int step = options.size + gap;
    const int count = static_cast<int>(pictures.size());
    const int rows = (count + options.columns - 1) / options.columns;
    QImage sheet(options.columns * step + gap, rows * step + gap, QImage::Format_RGB32);
    sheet.fill(options.isDark ? QColor(0x22, 0x24, 0x2C) : QColor(Qt::white));
    QPainter painter(&sheet);
    for (int i = 0; i < count; ++i) {
        painter.drawImage(gap + i % options.columns * step, gap + i / options.columns * step,
                          pictures[static_cast<std::size_t>(i)]);
    }
    painter.end();
    if (!sheet.save(path)) {
        throw std::runtime_error(path.toStdString() + ": can't be written");
    }
}

void writeSheets(const std::vector<QImage>& pictures, const Options& options)
{
    const auto perSheet = static_cast<std::ptrdiff_t>(options.perSheet);
    const QString base = QString::fromStdString(options.out);
    int number = 1;
    for (auto from = pictures.begin(); from != pictures.end(); ++number) {
        const auto to = from + std::min(perSheet, pictures.end() - from);
        writeSheet({from, to}, options, QStringLiteral("%1-%2.png").arg(base).arg(number));
        from = to;
    }
}

std::vector<QImage> icons(const Options& options)
{
    std::vector<QImage> pictures;
    for (const std::string& avatar : options.avatars) {
        pictures.push_back(drawAvatarIcon(QString::fromStdString(avatar), options.size));
    }
    return pictures;
}

std::vector<QImage> stickers(const StickerTemplates& templates, const Options& options)
{
    std::vector<QImage> pictures;
    std::size_t next = 0;
    const auto avatar = [&](std::size_t i) {
        return QString::fromStdString(options.avatars[i % options.avatars.size()]);
    };
    for (const StickerTemplate& sticker : templates.all()) {
        if (options.only.empty() ||
            std::find(options.only.begin(), options.only.end(), sticker.id.toStdString()) != options.only.end()) {
            pictures.push_back(drawSticker(sticker, avatar(next), avatar(next + 1), options.size));
            ++next;
        }
    }
    return pictures;
}

/// Processor time spent since the call before, in milliseconds.
double lap()
{
    static std::clock_t before = 0;
    const std::clock_t now = std::clock();
    const std::clock_t spent = now - before;
    before = now;
    return 1000.0 * static_cast<double>(spent) / CLOCKS_PER_SEC;
}

/// How long drawing and encoding take, and how large the files are.
void printCosts(const StickerTemplates& templates, const Options& options)
{
    double drawn = 0;
    double encoded = 0;
    double longest = 0;
    qsizetype largest = 0;
    qsizetype bytes = 0;
    const QString avatar = QString::fromStdString(options.avatars.front());
    for (const StickerTemplate& sticker : templates.all()) {
        lap();
        const QImage image = drawSticker(sticker, avatar, avatar, options.size);
        const double drawTime = lap();
        const qsizetype size = encodedAsPng(image).size();
        const double encodeTime = lap();
        drawn += drawTime;
        encoded += encodeTime;
        longest = std::max(longest, drawTime + encodeTime);
        largest = std::max(largest, size);
        bytes += size;
    }
    const auto count = static_cast<double>(templates.all().size());
    std::printf(
        "%d pixels: drawing %.2f ms, encoding %.2f ms, longest of both %.2f ms; %.1f KB a picture, largest %.1f KB\n",
        options.size, drawn / count, encoded / count, longest, static_cast<double>(bytes) / count / 1024,
        static_cast<double>(largest) / 1024);
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QGuiApplication application(argc, argv);
    Options options;
    CLI::App app("All drawings side by side, to look at. Without --templates: the avatars' icons.",
                 "kovalin-drawing-sheet");
    app.add_option("--templates", options.templates, "The templates file of a content folder");
    app.add_option("--out", options.out, "Where the sheets go: OUT-1.png, OUT-2.png …");
    app.add_option("--avatars", options.avatars, "The avatar ids, taken in turn")->delimiter(',');
    app.add_option("--only", options.only, "The templates to draw")->delimiter(',');
    app.add_option("--size", options.size, "Of a picture, in pixels")->check(CLI::Range(smallestSize, largestSize));
    app.add_option("--columns", options.columns, "Of a sheet")->check(CLI::Range(1, 100));
    app.add_option("--per-sheet", options.perSheet, "Pictures on a sheet")->check(CLI::Range(1, 1000));
    app.add_flag("--dark", options.isDark, "On a dark ground");
    app.add_flag("--time", options.isTimed, "Print how long the drawings take");
    try {
        app.parse(argc, argv);
        const auto templates = options.templates.empty()
                                   ? StickerTemplates()
                                   : StickerTemplates::fromFile(QString::fromStdString(options.templates));
        if (!options.out.empty()) {
            writeSheets(options.templates.empty() ? icons(options) : stickers(templates, options), options);
        }
        if (options.isTimed) {
            printCosts(templates, options);
        }
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
