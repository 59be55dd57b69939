#include "platform/store/SvgCheck.h"

#include "platform/store/DecodeImage.h"
#include "platform/store/StoreTesting.h"

#include <gtest/gtest.h>

namespace kovalin::platform {
namespace {

using test::svgWith;

/// Ten times ten times … a rectangle.
QByteArray repeated(int levels)
{
    QByteArray content = "<rect id=\"level0\" width=\"1\" height=\"1\"/>";
    for (int level = 1; level <= levels; ++level) {
        content += "<g id=\"level" + QByteArray::number(level) + "\">";
        for (int i = 0; i < 10; ++i) {
            content += "<use xlink:href=\"#level" + QByteArray::number(level - 1) + "\"/>";
        }
        content += "</g>";
    }
    return content;
}

TEST(SvgCheck, LetsPlainDrawingsThrough)
{
    for (const char* content : {
             "<rect width=\"1\" height=\"1\"/>",
             "<text>a &amp; b &lt;url(&gt; c</text>",
             "<a href=\"https://example.com/\"><rect/></a>",
             "<defs><linearGradient id=\"g\"><stop/></linearGradient></defs><rect fill=\"url(#g)\"/>",
             "<rect fill='url(\"#g\")' style=\"stroke: url( '#h' )\"/>",
             "<style>.a { fill: url(#g) }</style>",
             "<g id=\"a\"><rect/></g><use xlink:href=\"#a\"/><use href=\" #a \"/>",
             "<use href=\"#nothing\"/>",
             "<?xpacket begin?><metadata>written by a program</metadata>",
         }) {
        const auto defect = defectOfSvg(svgWith(content));
        // The text with "url(" in it isn't told apart from a style: it is refused.
        EXPECT_EQ(defect.has_value(), QByteArray(content).contains("&lt;url(")) << content;
    }
    EXPECT_FALSE(defectOfSvg("<?xml version=\"1.0\"?><!DOCTYPE svg PUBLIC \"-//W3C//DTD SVG 1.1//EN\" "
                             "\"http://www.w3.org/Graphics/SVG/1.1/DTD/svg11.dtd\">" +
                             svgWith("<rect/>")));
}

TEST(SvgCheck, RefusesWhatComesFromOutside)
{
    for (const char* content : {
             "<image xlink:href=\"file:///etc/hostname\"/>",
             "<image href=\"/dev/zero\" width=\"1\" height=\"1\"/>",
             "<image href=\"data:image/png;base64,AAAA\"/>",
             "<x:image xmlns:x=\"other\" href=\"a.png\"/>",
             "<use xlink:href=\"other.svg#a\"/>",
             "<use href=\"http://example.com/a.svg\"/>",
             "<linearGradient xlink:href=\"file:///a\"/>",
             "<rect fill=\"url(http://example.com/a)\"/>",
             "<rect fill=\"URL('a.svg#b')\"/>",
             "<rect style=\"fill:url(#a);stroke:url(b)\"/>",
             "<rect fill=\"url(\"/>",
             "<style>@import 'a.css';</style>",
             "<style>@font-face { src: url(a.ttf) }</style>",
             "<style><![CDATA[ .a { fill: url(a) } ]]></style>",
             "<font><font-face/></font>",
             "<foreignObject/>",
             "<script>a</script>",
             "<?xml-stylesheet type=\"text/css\" href=\"/etc/passwd\"?>",
         }) {
        EXPECT_TRUE(defectOfSvg(svgWith(content))) << content;
    }
}

TEST(SvgCheck, RefusesEntities)
{
    EXPECT_TRUE(defectOfSvg("<!DOCTYPE svg [<!ENTITY a \"b\">]>" + svgWith("<text>&a;</text>")));
    EXPECT_TRUE(
        defectOfSvg("<!DOCTYPE svg [<!ENTITY a SYSTEM \"file:///etc/passwd\">]>" + svgWith("<text>&a;</text>")));
    EXPECT_TRUE(defectOfSvg(svgWith("<text>&unknown;</text>")));
}

TEST(SvgCheck, RefusesWhatIsNotWellFormed)
{
    for (const char* bytes :
         {"", "<", "<svg", "<svg>", "<svg><g></svg>", "<html/>", "<!-- nothing -->", "<svg/><svg/>", "<svg a=1/>"}) {
        EXPECT_TRUE(defectOfSvg(bytes)) << bytes;
    }
}

TEST(SvgCheck, RefusesRepetitionWithoutBounds)
{
    EXPECT_FALSE(defectOfSvg(svgWith(repeated(3))));
    EXPECT_TRUE(defectOfSvg(svgWith(repeated(6))));
    EXPECT_TRUE(defectOfSvg(svgWith(repeated(60))));
    EXPECT_TRUE(defectOfSvg(svgWith("<g id=\"a\"><use xlink:href=\"#a\"/></g>")));
    EXPECT_TRUE(defectOfSvg(svgWith("<g id=\"a\"><use href=\"#b\"/></g><g id=\"b\"><use href=\"#a\"/></g>")));
}

TEST(SvgCheck, CountsNoColoursAsDrawing)
{
    QByteArray content = "<linearGradient id=\"g\">" + QByteArray("<stop/>").repeated(20) + "</linearGradient>";
    content += QByteArray("<rect fill=\"url(#g)\"/>").repeated(15'000);
    EXPECT_FALSE(defectOfSvg(svgWith(content)));
}

TEST(SvgCheck, RefusesDepthAndNumberBeyondItsBounds)
{
    EXPECT_FALSE(defectOfSvg(svgWith(QByteArray("<g>").repeated(90) + QByteArray("</g>").repeated(90))));
    EXPECT_TRUE(defectOfSvg(svgWith(QByteArray("<g>").repeated(100'000) + QByteArray("</g>").repeated(100'000))));
    EXPECT_TRUE(defectOfSvg(svgWith(QByteArray("<g/>").repeated(30'000))));
    QByteArray chain = "<rect id=\"a0\"/>";
    for (int i = 1; i < 10'000; ++i) {
        chain += "<use id=\"a" + QByteArray::number(i) + "\" href=\"#a" + QByteArray::number(i - 1) + "\"/>";
    }
    EXPECT_TRUE(defectOfSvg(svgWith("<use href=\"#a9999\"/>" + chain)));
}

TEST(SvgCheck, KeepsADrawingFromReadingAFile)
{
    const test::Folder folder{};
    folder.write(QStringLiteral("secret.png"), test::encoded(test::plain(Qt::red)));
    const QByteArray path = folder.path(QStringLiteral("secret.png")).toUtf8();
    EXPECT_TRUE(decodeImage(svgWith("<image width=\"16\" height=\"16\" xlink:href=\"" + path + "\"/>")).isNull());
    EXPECT_TRUE(
        decodeImage(svgWith("<image width=\"16\" height=\"16\" xlink:href=\"file://" + path + "\"/>")).isNull());
}

} // namespace
} // namespace kovalin::platform
