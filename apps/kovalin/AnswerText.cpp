#include "kovalin/AnswerText.h"

#include "kovalin/TextTable.h"

#include <algorithm>

namespace kovalin::cli {

QString answerHeading(const QString& query, const QStringList& counts)
{
    return u'"' + TextTable::printable(query) + QStringLiteral("\": ") + counts.join(QStringLiteral(", ")) + u'\n';
}

QString counted(qsizetype count, const QString& noun)
{
    return QString::number(count) + u' ' + noun + (count == 1 ? QString() : QStringLiteral("s"));
}

qsizetype shownOf(qsizetype count, qsizetype limit)
{
    return limit == 0 ? count : std::min(limit, count);
}

QString moreLine(qsizetype count)
{
    return count > 0 ? QStringLiteral("  … and ") + QString::number(count) + QStringLiteral(" more\n") : QString();
}

} // namespace kovalin::cli
