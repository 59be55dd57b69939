// Measures what a picker costs its host: linking the library, making a picker, its start to the first sticker, its memory,
// what it does while it is hidden, and the size of the libraries.
//
// picker_start_bench [--quick]

#include "Measure.h"
#include "MeasuredPicker.h"
#include "QuickOption.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtGui/QGuiApplication>
#include <QtQuick/QQuickWindow>

#include <fmt/format.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace kovalin::bench {

namespace {

constexpr int kStickers = 2'000;
constexpr double kBytesPerMegabyte = 1e6;
constexpr double kNanosPerMilli = 1e6;

/// What a program prints; ends this one where that fails.
QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        fmt::print(stderr, "{} has failed.\n", program.toStdString());
        std::exit(1);
    }
    return process.readAllStandardOutput();
}

std::vector<double> numbersOf(const QByteArray& line)
{
    std::vector<double> numbers;
    for (const QByteArray& field : line.simplified().split(' ')) {
        numbers.push_back(field.toDouble());
    }
    return numbers;
}

/// The medians of the numbers that runs gave, place by place.
std::vector<double> medians(const std::vector<std::vector<double>>& runs)
{
    std::vector<double> result;
    for (std::size_t place = 0; place < runs.front().size(); ++place) {
        std::vector<double> values;
        for (const auto& run : runs) {
            values.push_back(run.at(place));
        }
        result.push_back(quantile(std::move(values), 0.5));
    }
    return result;
}

/// How many threads, and how much time, a program has more when it comes to main() that is linked with the library. Both start in
/// turns, so that what else the machine does meanwhile hits both.
std::vector<double> costOfLinking(int runs)
{
    std::vector<std::vector<double>> all;
    for (int run = 0; run < runs; ++run) {
        const auto linked = numbersOf(outputOf(QStringLiteral(KOVALIN_LINKED_PROGRAM), {}));
        const auto bare = numbersOf(outputOf(QStringLiteral(KOVALIN_BARE_PROGRAM), {}));
        all.push_back({linked.at(0) - bare.at(0), linked.at(1) - bare.at(1)});
    }
    return medians(all);
}

double strippedSize(const char* library)
{
    const QTemporaryDir folder;
    const QString stripped = folder.filePath(QStringLiteral("stripped"));
    static_cast<void>(outputOf(QStringLiteral("strip"), {QStringLiteral("-o"), stripped, QString::fromUtf8(library)}));
    return static_cast<double>(QFileInfo(stripped).size());
}

void printRow(std::string_view what, double value, std::string_view unit, std::string_view goal)
{
    fmt::print("| {} | {:.3g}{}{} | {} |\n", what, value, unit.empty() ? "" : " ", unit, goal);
}

void run(bool isQuick)
{
    const QString self = QCoreApplication::applicationFilePath();
    // Each run in a process of its own, whose first picker it is, over an archive that nobody has read yet.
    std::vector<std::vector<double>> runs;
    for (int round = 0; round < (isQuick ? 1 : 3); ++round) {
        const QTemporaryDir folder;
        static_cast<void>(outputOf(self, {QStringLiteral("--leave-caches"), folder.path()}));
        runs.push_back(numbersOf(outputOf(
            self, {isQuick ? QStringLiteral("--measure-quickly") : QStringLiteral("--measure"), folder.path()})));
    }
    const std::vector<double> figures = medians(runs);
    const int starts = isQuick ? 5 : 200;
    const auto linking = costOfLinking(starts);
    const double core = strippedSize(KOVALIN_LIBRARY_LEARNED_SEARCH);

    fmt::print("{} stickers, their packs and pictures on disk\n\n| What | Measured | Goal |\n|---|---:|---:|\n",
               kStickers);
    printRow("linking the library, of the main thread until `main()`", linking.at(1) / kNanosPerMilli, "ms",
             "under 2 ms");
    printRow("threads that this starts", linking.at(0), "", "0");
    printRow("making a controller with its view", figures.at(0) / kNanosPerMilli, "ms", "under 10 ms");
    printRow("first sticker drawn, of a process's first picker", figures.at(1) / kNanosPerMilli, "ms", "under 250 ms");
    printRow("first sticker drawn, opened again", figures.at(2) / kNanosPerMilli, "ms", "under 50 ms");
    printRow("an open picker, on the heap", figures.at(3) / kBytesPerMegabyte, "MB", "");
    printRow("an open picker, memory that isn't shared", figures.at(4) / kBytesPerMegabyte, "MB", "at most 40 MB");
    printRow("what 1 000 screens add to the heap", figures.at(5) / kBytesPerMegabyte, "MB", "0");
    printRow("wake-ups in a second while it is hidden", figures.at(6), "", "0");
    printRow("both libraries stripped", (strippedSize(KOVALIN_LIBRARY) + core) / kBytesPerMegabyte, "MB",
             "at most 2 MB");
    printRow("the same without views", (strippedSize(KOVALIN_LIBRARY_WITHOUT_VIEWS) + core) / kBytesPerMegabyte, "MB",
             "at most 1 MB");
}

/// In a process of its own.
int measure(const QString& folder, bool isQuick)
{
    const PickerFigures figures = measurePicker(folder, kStickers, isQuick);
    for (const double figure : {figures.creation, figures.coldStart, figures.warmStart, figures.openHeap,
                                figures.openPages, figures.grownHeap, figures.wakeUps}) {
        fmt::print("{} ", figure);
    }
    return 0;
}

} // namespace

} // namespace kovalin::bench

int main(int argc, char** argv)
{
    using namespace kovalin;

    qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules(QStringLiteral("kovalin.*=false"));
    const std::string_view mode = argc > 2 ? argv[1] : "";
    if (mode.empty()) {
        const QCoreApplication application(argc, argv);
        bench::run(bench::isQuick(argc, argv));
        return 0;
    }
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    const QString folder = QString::fromLocal8Bit(argv[2]);
    if (mode == "--leave-caches") {
        bench::leaveCaches(folder, bench::kStickers);
        return 0;
    }
    return bench::measure(folder, mode == "--measure-quickly");
}
