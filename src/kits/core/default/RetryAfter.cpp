#include "kits/core/default/RetryAfter.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtCore/QString>

#include <algorithm>

namespace kovalin::kits {

namespace {

// Longer than any caller allows, and far from overflowing.
constexpr qint64 kMostSeconds = qint64(100) * 365 * 24 * 3600;

std::optional<qint64> secondsIn(const QByteArray& text)
{
    const bool isNumber = !text.isEmpty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
    if (!isNumber) {
        return std::nullopt;
    }
    bool isInRange = false;
    const qint64 seconds = text.toLongLong(&isInRange);
    return isInRange ? std::min(seconds, kMostSeconds) : kMostSeconds;
}

std::optional<qint64> dateIn(const QString& text)
{
    // The form of today, that of RFC 850, and that of asctime(), behind the day of the week: that goes by the century, of
    // which two digits of a year say nothing.
    static const QString forms[] = {QStringLiteral("dd MMM yyyy hh:mm:ss 'GMT'"),
                                    QStringLiteral("dd-MMM-yy hh:mm:ss 'GMT'"), QStringLiteral("MMM d hh:mm:ss yyyy")};
    const QString withoutDay = text.section(u' ', 1);
    for (const QString& form : forms) {
        QDateTime date = QLocale::c().toDateTime(withoutDay, form);
        if (date.isValid()) {
            // Two digits are a year of the last century to Qt.
            if (date.date().year() < 1970) {
                date = date.addYears(100);
            }
            return QDateTime(date.date(), date.time(), Qt::UTC).toMSecsSinceEpoch();
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<std::chrono::milliseconds> retryAfterIn(const QByteArray& value, qint64 now)
{
    const QByteArray text = value.simplified();
    if (const auto seconds = secondsIn(text)) {
        return std::chrono::seconds(*seconds);
    }
    if (const auto date = dateIn(QString::fromLatin1(text))) {
        return std::chrono::milliseconds(std::max<qint64>(0, *date - now));
    }
    return std::nullopt;
}

} // namespace kovalin::kits
