#pragma once

#include "platform/foundation/WeakSet.h"
#include "search/QXSDKKovalinSearchEngine.h"
#include "search/QXSDKKovalinTagIndex.h"

#include <QtCore/QMap>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace kovalin::test {

/// A search engine that answers when, and in the order in which, a test says. Main thread only.
class ScriptedSearchEngine final : public QXSDKKovalinSearchEngine, public QXSDKKovalinTagIndex {
public:
    struct Search {
        QString text;
        QXSDKKovalinSearchResultTypes resultTypes;
        SearchCompletion completion;
    };

    void addObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer) override
    {
        _observers.add(observer);
    }
    void removeObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer) override
    {
        _observers.remove(observer);
    }
    void processPacks(const KovalinPackList&, ProcessCompletion completion) override { completion(); }
    void search(const QString& text, const QXSDKKovalinSearchResultTypes& resultTypes,
                SearchCompletion completion) override
    {
        searches.push_back({text, resultTypes, std::move(completion)});
    }
    [[nodiscard]] KovalinStickerList
    searchWithExactMatch(const QString& tag, const QXSDKKovalinSearchResultTypes& resultTypes) const override
    {
        exactSearches.push_back({tag, resultTypes, {}});
        return stickersByTag.value(tag);
    }
    [[nodiscard]] bool isInitialized() const override { return isReady; }
    [[nodiscard]] QXSDKKovalinEmotion emotionForTag(const QString&) const override
    {
        return QXSDKKovalinEmotionUnknown;
    }
    [[nodiscard]] KovalinPackPtr packForTag(const QString& tag) const override { return packsByTitle.value(tag); }

    void answer(std::size_t search, const KovalinStickerList& stickers, const QStringList& tags)
    {
        searches.at(search).completion(stickers, tags);
    }
    /// The index was built anew.
    void tellProcessed()
    {
        isReady = true;
        _observers.forEach([](QXSDKKovalinSearchEngineObserver& each) { each.searchEngineDidProcessPacks(); });
    }
    [[nodiscard]] QStringList searchedTexts() const
    {
        QStringList texts;
        for (const Search& each : searches) {
            texts.append(each.text);
        }
        return texts;
    }

    bool isReady = true;
    std::vector<Search> searches;
    mutable std::vector<Search> exactSearches;
    QMap<QString, KovalinStickerList> stickersByTag;
    QMap<QString, KovalinPackPtr> packsByTitle;

private:
    platform::WeakSet<QXSDKKovalinSearchEngineObserver> _observers;
};

} // namespace kovalin::test
