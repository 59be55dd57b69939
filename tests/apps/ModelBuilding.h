#pragma once

#include "apps/KovalinProgram.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vole::learned_search {
class LearnedSearchClassifier;
}

namespace kovalin::test {

/// Runs `kovalin model build` on the pairs, which it gets through its standard input.
[[nodiscard]] ProgramResult buildModel(const QByteArray& pairs, const QString& out, const QStringList& more = {});

/// A classifier on the model file.
[[nodiscard]] std::shared_ptr<vole::learned_search::LearnedSearchClassifier> classifierOn(const QString& model);

/// What a model file holds, read by the schema's own accessors.
struct BuiltModel {
    struct Key {
        std::string word;
        std::int32_t start;
        float wordPrior;
        float endWordScore;
        std::vector<std::pair<std::int32_t, float>> rows; // comic and factor
    };

    std::vector<std::pair<std::int32_t, float>> comics; // id and prior
    std::vector<Key> keys;

    [[nodiscard]] std::vector<std::string> words() const;
    /// A key without a word where there is none.
    [[nodiscard]] Key key(const std::string& word) const;
    /// The comics of a key in the order of its rows.
    [[nodiscard]] std::vector<std::int32_t> comicsOf(const std::string& word) const;
    [[nodiscard]] std::vector<std::int32_t> comicIds() const;
};

[[nodiscard]] BuiltModel readModel(const QString& path);

/// The file's bytes; empty where there is none.
[[nodiscard]] QByteArray contentOf(const QString& path);

} // namespace kovalin::test
