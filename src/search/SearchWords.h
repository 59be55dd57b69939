#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QStringView>
#include <QtCore/QVarLengthArray>

/// The words of a search text or a tag: lower-cased, straight apostrophes taken out, split at punctuation (the Unicode
/// categories P…), spaces (Zs) and tabs. Symbols, line breaks and letters of any script belong to words. Independent of
/// the locale.
///
/// A value; any thread. The words are views into text that the object keeps, so they live as long as it or a copy of it.
class SearchWords final {
public:
    explicit SearchWords(const QString& text);

    [[nodiscard]] auto begin() const { return _words.cbegin(); }
    [[nodiscard]] auto end() const { return _words.cend(); }
    [[nodiscard]] qsizetype size() const { return _words.size(); }
    [[nodiscard]] bool isEmpty() const { return _words.isEmpty(); }
    [[nodiscard]] QStringView first() const { return _words.first(); }

    [[nodiscard]] QStringList toStringList() const;

private:
    QString _text;
    QVarLengthArray<QStringView, 8> _words;
};
