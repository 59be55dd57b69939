#include "support/ReferencePicture.h"

#include "support/PictureDifference.h"
#include "support/QtPrinting.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QMap>
#include <QtGui/QImageReader>
#include <QtGui/QImageWriter>

namespace kovalin::test {

namespace {

constexpr qsizetype maxPaletteSize = 256;

/// The picture with a palette; null where it has too many colours for one.
QImage indexedCopyOf(const QImage& picture)
{
    QMap<QRgb, uchar> numbers; // sorted: the same pixels give the same file
    for (int y = 0; y < picture.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            numbers.insert(line[x], 0);
            if (numbers.size() > maxPaletteSize) {
                return {};
            }
        }
    }
    QList<QRgb> palette;
    for (auto number = numbers.begin(); number != numbers.end(); ++number) {
        number.value() = static_cast<uchar>(palette.size());
        palette.append(number.key());
    }
    QImage indexed(picture.size(), QImage::Format_Indexed8);
    indexed.setColorTable(palette);
    for (int y = 0; y < picture.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        uchar* const target = indexed.scanLine(y);
        for (int x = 0; x < picture.width(); ++x) {
            target[x] = numbers.value(line[x]);
        }
    }
    return indexed;
}

/// Where one comparison's files lie.
struct Files {
    QString reference;
    QString actual;
    QString expected;
    QString difference;
};

Files filesOf(const ReferenceFolders& folders, const QString& scene, const QString& name)
{
    const QString failure = folders.failures + u'/' + scene + u'/' + name;
    return {folders.references + u'/' + scene + u'/' + name + QStringLiteral(".png"),
            failure + QStringLiteral(".actual.png"), failure + QStringLiteral(".expected.png"),
            failure + QStringLiteral(".difference.png")};
}

void removeFailure(const Files& files)
{
    for (const QString& path : {files.actual, files.expected, files.difference}) {
        QFile::remove(path);
    }
}

QString sizeText(const QSize& size)
{
    return QStringLiteral("%1 × %2 pixels").arg(size.width()).arg(size.height());
}

/// What is wrong with the reference as a file; empty if nothing is.
QString faultOf(const QImage& expected, const QImageReader& reader, const QImage& actual)
{
    if (!QFileInfo::exists(reader.fileName())) {
        return QStringLiteral("there is no reference; KOVALIN_UPDATE_REFERENCE_PICTURES=1 writes it, to be looked at");
    }
    if (expected.isNull()) {
        return QStringLiteral("the reference can't be read: ") + reader.errorString();
    }
    if (expected.hasAlphaChannel()) {
        return QStringLiteral("the reference has transparency, which no window has");
    }
    if (expected.size() != actual.size()) {
        return QStringLiteral("it has %1, the reference %2").arg(sizeText(actual.size()), sizeText(expected.size()));
    }
    return {};
}

QString textOf(const PictureDifference& difference)
{
    return QStringLiteral("%1 pixels differ, where %2 may; %3 of them in the 8 × 8 at (%4, %5)")
        .arg(difference.pixels)
        .arg(difference.allowedPixels)
        .arg(difference.mostInBlock)
        .arg(difference.worstBlock.x())
        .arg(difference.worstBlock.y());
}

testing::AssertionResult write(const QImage& picture, const QString& path)
{
    if (QDir().mkpath(QFileInfo(path).path()) && writeSmallPng(picture, path)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "can't write " << path.toStdString();
}

/// Leaves the pictures to look at, and says where.
testing::AssertionResult failure(const Files& files, const QString& fault, const QImage& actual, const QImage& expected,
                                 const QImage& difference)
{
    auto result = testing::AssertionFailure()
                  << "not as " << files.reference.toStdString() << ": " << fault.toStdString();
    const std::pair<const QImage&, const QString&> pictures[] = {
        {actual, files.actual}, {expected, files.expected}, {difference, files.difference}};
    for (const auto& [picture, path] : pictures) {
        if (!picture.isNull()) {
            const auto written = write(picture, path);
            result << "\n    " << (written ? path.toStdString() : written.message());
        }
    }
    return result;
}

} // namespace

bool writeSmallPng(const QImage& picture, const QString& path)
{
    constexpr int bestCompression = 100;
    const QImage pixels = picture.convertToFormat(QImage::Format_RGB32);
    const QImage indexed = indexedCopyOf(pixels);
    QImageWriter writer(path, "png");
    writer.setCompression(bestCompression);
    return writer.write(indexed.isNull() ? pixels.convertToFormat(QImage::Format_RGB888) : indexed);
}

testing::AssertionResult matchesReference(const QImage& actual, const QString& scene, const QString& name,
                                          const ReferenceFolders& folders, bool isUpdating)
{
    const Files files = filesOf(folders, scene, name);
    removeFailure(files);
    if (actual.isNull()) {
        return testing::AssertionFailure() << "nothing was drawn for " << files.reference.toStdString();
    }
    QImageReader reader(files.reference, "png");
    const QImage expected = QFileInfo::exists(files.reference) ? reader.read() : QImage();
    const QString fault = faultOf(expected, reader, actual);
    if (!fault.isEmpty()) {
        return isUpdating ? write(actual, files.reference) : failure(files, fault, actual, expected, {});
    }
    const auto difference = PictureDifference::of(actual, expected);
    if (difference.isTolerable()) {
        return testing::AssertionSuccess();
    }
    return isUpdating ? write(actual, files.reference)
                      : failure(files, textOf(difference), actual, expected, difference.picture);
}

testing::AssertionResult matchesReference(const QImage& actual, const QString& scene, const QString& name)
{
    const ReferenceFolders folders{QStringLiteral(KOVALIN_REFERENCE_PICTURES_DIR),
                                   QStringLiteral(KOVALIN_PICTURE_FAILURES_DIR)};
    return matchesReference(actual, scene, name, folders,
                            qEnvironmentVariableIntValue("KOVALIN_UPDATE_REFERENCE_PICTURES") == 1);
}

} // namespace kovalin::test
