#include "support/TestFont.h"

#include <QtGui/QFont>
#include <QtGui/QFontDatabase>
#include <QtGui/QGuiApplication>

namespace kovalin::test {

namespace {

/// Of the Debian package fonts-dejavu-core.
const QString regularFile = QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
const QString boldFile = QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf");
constexpr int pixelSize = 14; // of text that has no size of its own

/// The family; empty where the file is missing or no font.
QString added(const QString& file)
{
    const int id = QFontDatabase::addApplicationFont(file);
    return id < 0 ? QString() : QFontDatabase::applicationFontFamilies(id).value(0);
}

} // namespace

QString installTestFont()
{
    static const QString family = added(regularFile);
    static const QString boldFamily = added(boldFile);
    if (family.isEmpty() || boldFamily.isEmpty()) {
        return QStringLiteral("the font file %1 is missing (Debian package fonts-dejavu-core)")
            .arg(family.isEmpty() ? regularFile : boldFile);
    }
    QFont font(family);
    font.setPixelSize(pixelSize);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    QGuiApplication::setFont(font);
    return {};
}

} // namespace kovalin::test
