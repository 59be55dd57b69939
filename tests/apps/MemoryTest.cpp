#include "apps/KovalinProgram.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>

using namespace kovalin::test;

namespace {

/// Writes a document without white space, with unique identifiers and tags out of a vocabulary of 20 000 words, and returns
/// its size in bytes.
qint64 writePacks(const QString& path, qint64 leastSize)
{
    std::mt19937 random(1); // the same document every time
    std::uniform_int_distribution<int> word(0, 19'999);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{\"packs\":[");
    int number = 100'000'000;
    for (int pack = 0; file.pos() < leastSize; ++pack) {
        file.write(QByteArray(pack > 0 ? "," : "") + "{\"id\":\"p" + QByteArray::number(pack) + "\",\"title\":\"Pack " +
                   QByteArray::number(pack) + "\",\"visible\":true,\"stickers\":[");
        for (int i = 0; i < 5000; ++i) {
            const QByteArray id = QByteArray::number(++number);
            QByteArray tags;
            for (int tag = 0; tag < 2 + number % 2; ++tag) {
                tags += QByteArray(tag > 0 ? "," : "") + "\"word" + QByteArray::number(word(random)) + '"';
            }
            file.write(QByteArray(i > 0 ? "," : "") + "{\"comic_id\":\"" + id + "\",\"template_id\":\"t" + id +
                       "\",\"url\":\"https://stickers.example/render/" + id + "-%s.png?scale=2\",\"tags\":[" + tags +
                       "],\"capabilities\":[\"ANIMATED\"]}");
        }
        file.write("]}");
    }
    file.write("]}");
    return file.pos();
}

/// The most memory that the process has had so far, in bytes; 0 where the system doesn't tell.
qint64 peakMemory(qint64 processId)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(processId));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const auto match =
        QRegularExpression(QStringLiteral("VmHWM:\\s*(\\d+) kB")).match(QString::fromUtf8(status.readAll()));
    return match.captured(1).toLongLong() * 1024;
}

qint64 peakOfSearch(const QString& packs)
{
    RunningKovalin kovalin({QStringLiteral("search"), QStringLiteral("--packs"), packs, QStringLiteral("--json")});
    EXPECT_NE(kovalin.ask("word1234"), "");
    return peakMemory(kovalin.processId());
}

TEST(KovalinMemory, StaysBelowThreeTimesTheSizeOfTheFile)
{
#ifdef KOVALIN_SANITIZED
    GTEST_SKIP() << "a sanitizer's own memory would be counted";
#endif
    Files files;
    const QString packs = files.path(QStringLiteral("packs.json"));
    const qint64 size = writePacks(packs, 30'000'000);
    const qint64 peak = peakOfSearch(packs);
    if (peak == 0) {
        GTEST_SKIP() << "this system doesn't tell a process's peak memory";
    }
    EXPECT_LT(peak, 3 * size);
}

} // namespace
