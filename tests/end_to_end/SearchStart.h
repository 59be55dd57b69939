#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace kovalin::test {

/// What one start of the library came to.
struct SearchStart {
    bool isLearnedEngineReady = false;
    QStringList comicIds; // of the stickers that the query found, in order
    QStringList tags;

    friend bool operator==(const SearchStart&, const SearchStart&) = default;
};

/// The query of a start: one sticker carries it as a tag, and the models of these tests know it.
inline const QString startQuery = QStringLiteral("dog");

/// The comic id of the sticker that has the tag. The other stickers have the ids 1 to `startComics` and no tags.
inline const QString taggedComic = QStringLiteral("900");
constexpr int startComics = 300;

/// Starts the library as a host does, against the backend at `baseUrl`: fetches the configuration, makes the engines, which has
/// the model delivered, gives them packs, waits for both, and asks one query. Main thread; runs the event loop.
[[nodiscard]] SearchStart startAndSearch(const QString& baseUrl);

} // namespace kovalin::test
