#include "platform/foundation/Color.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <QtGui/QRgba64>

#include <cstdlib>

namespace kovalin::platform {

namespace {

constexpr qsizetype kShortestText = 6;

float channel(quint64 number, int lowestBit)
{
    return static_cast<float>(static_cast<double>((number >> lowestBit) & 0xFFU) / 255.0);
}

} // namespace

QColor colorWithHexString(QStringView text)
{
    QString digits = text.toString();
    digits.remove(u'#');
    if (digits.size() < kShortestText) {
        return QColor::fromRgbF(0, 0, 0, 1);
    }
    // strtoll and not strtol: a long has 32 bits on some systems, and saturates earlier there. No byte of a character
    // outside ASCII is a digit or white space in UTF-8, so such a character ends the number.
    const QByteArray bytes = digits.toUtf8();
    const auto number = static_cast<quint64>(std::strtoll(bytes.constData(), nullptr, 16));
    return QColor::fromRgbF(channel(number, 16), channel(number, 8), channel(number, 0), 1);
}

bool colorsEqual(const QColor& a, const QColor& b)
{
    return a.isValid() == b.isValid() && a.rgba64() == b.rgba64();
}

} // namespace kovalin::platform
