#include "platform/store/DecodeImage.h"
#include "platform/store/StoreTesting.h"

#include <QtGui/QImageReader>

#include <gtest/gtest.h>

namespace kovalin::platform {
namespace {

struct Sample {
    const char* format;
    QByteArray bytes;
    bool isCheckedToItsEnd; // whether every cut makes it damaged, or at least every cut into the first frame
};

QList<Sample> samples()
{
    const QByteArray moving = test::gif({Qt::red, Qt::blue}, QSize(8, 8));
    return {
        {"png", test::encoded(test::noise(1, QSize(8, 8))), false},
        {"png", test::encoded(test::noise(1, QSize(8, 8)).convertToFormat(QImage::Format_Indexed8)), false},
        {"jpeg", test::encoded(test::noise(1, QSize(8, 8)), "jpeg"), true},
        {"gif", test::gif({Qt::red}, QSize(8, 8)), false},
        {"gif", moving, false},
        {"webp", test::losslessWebP(), false},
        {"webp", test::lossyWebP(), false},
        {"svg", test::svg("red"), true},
        {"svg",
         test::svgWith("<defs><linearGradient id=\"g\"><stop offset=\"0\"/></linearGradient></defs>"
                       "<path d=\"M1 2 C 3 4 5 6 7 8 z\" fill=\"url(#g)\" transform=\"rotate(30)\"/>"),
         true},
    };
}

/// Qt tells of every damaged picture on its own.
class Silence final {
public:
    Silence()
        : _previous(qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {}))
    {
    }
    ~Silence() { qInstallMessageHandler(_previous); }
    Q_DISABLE_COPY_MOVE(Silence)

private:
    const QtMessageHandler _previous;
};

class DamagedPictures : public testing::Test {
protected:
    /// A null picture comes with a problem, another one without, and is as large as its header says.
    static QImage decode(const QByteArray& bytes)
    {
        QString problem;
        QImage image = decodeImage(bytes, &problem);
        EXPECT_EQ(image.isNull(), !problem.isEmpty());
        EXPECT_LE(qint64(image.width()) * image.height(), 16'000'000);
        return image;
    }

private:
    const Silence _silence;
};

TEST_F(DamagedPictures, AreBorneWhereverTheyAreCutOff)
{
    for (const Sample& sample : samples()) {
        for (qsizetype size = 0; size < sample.bytes.size(); ++size) {
            const QImage image = decode(sample.bytes.first(size));
            EXPECT_TRUE(image.isNull() || !sample.isCheckedToItsEnd) << sample.format << " of " << size << " bytes";
        }
    }
}

TEST_F(DamagedPictures, AreNotShownWithHalfOfTheFirstFrame)
{
    const QByteArray moving = test::gif({Qt::red, Qt::blue}, QSize(8, 8));
    const QByteArray still = test::gif({Qt::red}, QSize(8, 8));
    const qsizetype endOfFirst = still.size() - 1;
    for (qsizetype size = 0; size < moving.size(); ++size) {
        EXPECT_EQ(decode(moving.first(size)).isNull(), size < endOfFirst) << size;
    }
}

TEST_F(DamagedPictures, AreBorneWithAnyByteChanged)
{
    for (const Sample& sample : samples()) {
        for (qsizetype at = 0; at < sample.bytes.size(); ++at) {
            for (const unsigned change : {0xFFU, 0x01U, 0x80U, 0x20U}) {
                QByteArray bytes = sample.bytes;
                bytes[at] = static_cast<char>(static_cast<unsigned char>(bytes[at]) ^ change);
                decode(bytes);
            }
        }
    }
}

TEST_F(DamagedPictures, AreBorneWithBytesMissingOrTwice)
{
    for (const Sample& sample : samples()) {
        for (qsizetype at = 0; at + 4 < sample.bytes.size(); at += 3) {
            decode(QByteArray(sample.bytes).remove(at, 4));
            decode(QByteArray(sample.bytes).insert(at, sample.bytes.sliced(at, 4)));
        }
    }
}

TEST_F(DamagedPictures, AreToldFromGoodOnes)
{
    for (const Sample& sample : samples()) {
        const bool isReadable = QImageReader::supportedImageFormats().contains(sample.format);
        EXPECT_EQ(decode(sample.bytes).isNull(), !isReadable) << sample.format;
        EXPECT_EQ(decode(sample.bytes + "and what a server wrote behind it").isNull(),
                  !isReadable || QByteArray(sample.format) == "svg")
            << sample.format;
    }
}

} // namespace
} // namespace kovalin::platform
