#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace kovalin::cli {

// The parts of an answer for people that do not depend on what was asked for.

/// The line above an answer: the query and how much was found, as in "smile": 3 tags, 1 sticker
[[nodiscard]] QString answerHeading(const QString& query, const QStringList& counts);

/// A number with its noun, which gets an "s" unless the number is 1.
[[nodiscard]] QString counted(qsizetype count, const QString& noun);

/// How many of so many are shown; a limit of 0 is none.
[[nodiscard]] qsizetype shownOf(qsizetype count, qsizetype limit);

/// The line below a list that was cut; empty when nothing is left out.
[[nodiscard]] QString moreLine(qsizetype count);

} // namespace kovalin::cli
