#include "support/ReferencePicture.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

#include <gmock/gmock.h>

using kovalin::test::matchesReference;
using testing::HasSubstr;

namespace {

class ReferencePictureTest : public testing::Test {
protected:
    [[nodiscard]] testing::AssertionResult match(const QImage& actual, bool isUpdating = false) const
    {
        return matchesReference(
            actual, QStringLiteral("scene"), QStringLiteral("picture"),
            {folder.filePath(QStringLiteral("references")), folder.filePath(QStringLiteral("failures"))}, isUpdating);
    }

    [[nodiscard]] QString reference() const { return folder.filePath(QStringLiteral("references/scene/picture.png")); }
    [[nodiscard]] QStringList failures() const
    {
        return QDir(folder.filePath(QStringLiteral("failures/scene"))).entryList(QDir::Files, QDir::Name);
    }

    static QImage filled(QRgb color, const QSize& size = {40, 30})
    {
        QImage picture(size, QImage::Format_ARGB32_Premultiplied);
        picture.fill(color);
        return picture;
    }

    const QTemporaryDir folder;
};

TEST_F(ReferencePictureTest, aMissingReferenceFailsAndSaysHowToMakeIt)
{
    const auto result = match(filled(0xFF336699));
    EXPECT_FALSE(result);
    EXPECT_THAT(result.message(), HasSubstr(reference().toStdString()));
    EXPECT_THAT(result.message(), HasSubstr("KOVALIN_UPDATE_REFERENCE_PICTURES=1"));
    EXPECT_EQ(failures(), QStringList(QStringLiteral("picture.actual.png")));
    EXPECT_FALSE(QFileInfo::exists(reference()));
}

TEST_F(ReferencePictureTest, anUpdateWritesItAndThenItIsMet)
{
    ASSERT_TRUE(match(filled(0xFF336699), true));
    EXPECT_TRUE(match(filled(0xFF336699)));
    EXPECT_EQ(QImage(reference()).pixel(5, 5), 0xFF336699);
    EXPECT_TRUE(failures().isEmpty());
}

TEST_F(ReferencePictureTest, anUpdateLeavesAReferenceThatIsMet)
{
    ASSERT_TRUE(match(filled(0xFF336699), true));
    ASSERT_TRUE(match(filled(0xFF346698), true));
    EXPECT_EQ(QImage(reference()).pixel(5, 5), 0xFF336699);
    ASSERT_TRUE(match(filled(0xFF996633), true));
    EXPECT_EQ(QImage(reference()).pixel(5, 5), 0xFF996633);
}

TEST_F(ReferencePictureTest, aDifferenceLeavesThreePicturesAndNamesThem)
{
    ASSERT_TRUE(match(filled(0xFF336699), true));
    const auto result = match(filled(0xFF996633));
    EXPECT_FALSE(result);
    for (const char* name : {"picture.actual.png", "picture.difference.png", "picture.expected.png"}) {
        EXPECT_THAT(result.message(), HasSubstr(std::string("failures/scene/") + name));
    }
    EXPECT_EQ(failures().size(), 3);
    EXPECT_THAT(result.message(), HasSubstr("1200 pixels differ"));
    EXPECT_TRUE(match(filled(0xFF336699)));
    EXPECT_TRUE(failures().isEmpty()) << "of a picture that is met";
}

TEST_F(ReferencePictureTest, anotherSizeIsNamed)
{
    ASSERT_TRUE(match(filled(0xFF336699), true));
    const auto result = match(filled(0xFF336699, {41, 30}));
    EXPECT_FALSE(result);
    EXPECT_THAT(result.message(), HasSubstr("it has 41 × 30 pixels, the reference 40 × 30 pixels"));
    EXPECT_EQ(failures(), QStringList({QStringLiteral("picture.actual.png"), QStringLiteral("picture.expected.png")}));
}

TEST_F(ReferencePictureTest, aDamagedOrTransparentReferenceIsNamed)
{
    ASSERT_TRUE(match(filled(0xFF336699), true));
    QFile file(reference());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("none");
    file.close();
    EXPECT_THAT(match(filled(0xFF336699)).message(), HasSubstr("can't be read"));
    ASSERT_TRUE(filled(0x80336699).save(reference(), "png"));
    EXPECT_THAT(match(filled(0xFF336699)).message(), HasSubstr("transparency"));
}

TEST_F(ReferencePictureTest, nothingDrawnFails)
{
    EXPECT_THAT(match({}, true).message(), HasSubstr("nothing was drawn"));
    EXPECT_FALSE(QFileInfo::exists(reference()));
}

TEST_F(ReferencePictureTest, aFolderThatCannotBeWrittenIsNamed)
{
    QFile file(folder.filePath(QStringLiteral("references")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const auto result = match(filled(0xFF336699), true);
    EXPECT_FALSE(result);
    EXPECT_THAT(result.message(), HasSubstr("can't write"));
}

TEST_F(ReferencePictureTest, fewColoursMakeASmallFileAndManyLoseNothing)
{
    QImage picture(256, 256, QImage::Format_RGB32);
    for (int y = 0; y < 256; ++y) {
        for (int x = 0; x < 256; ++x) {
            picture.setPixel(x, y, qRgb(x, x, 0));
        }
    }
    ASSERT_TRUE(match(picture, true));
    const QImage few(reference());
    EXPECT_EQ(few.format(), QImage::Format_Indexed8);
    EXPECT_EQ(few.convertToFormat(QImage::Format_RGB32), picture);
    for (int y = 0; y < 256; ++y) {
        for (int x = 0; x < 256; ++x) {
            picture.setPixel(x, y, qRgb(x, y, 0));
        }
    }
    ASSERT_TRUE(match(picture, true));
    EXPECT_EQ(QImage(reference()).convertToFormat(QImage::Format_RGB32), picture);
}

} // namespace
