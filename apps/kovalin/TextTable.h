#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QStringView>

namespace kovalin::cli {

/// A table of text for a terminal, indented by two columns: aligned by what is seen, so that accents, wide letters and
/// pictographs don't push the next column away, and cut between whole characters where a cell is too long.
class TextTable final {
public:
    enum class Align { Left, Right };
    struct Column {
        QString title;
        Align align = Align::Left;
    };

    explicit TextTable(const QList<Column>& columns);

    /// A cell for each column.
    void addRow(const QStringList& cells);

    /// The title line and the rows, each with a line end.
    [[nodiscard]] QString toString() const;

    /// The text with "�" for what would move the cursor or can't be encoded.
    [[nodiscard]] static QString printable(const QString& text);

private:
    QList<Align> _alignments;
    QList<QStringList> _rows;
};

} // namespace kovalin::cli
