#pragma once

#include "picker/content/QXSDKKovalinStickerPickerContentView.h"
#include "picker/tags/QXSDKKovalinTagTileFactory.h"
#include "platform/foundation/Clock.h"
#include "search/QXSDKKovalinSearchSequence.h"

#include <memory>
#include <optional>

/// What a content view knows.
struct QXSDKKovalinStickerPickerContentView::State {
    State(const std::shared_ptr<QXSDKKovalinFriendState>& itsFriendState,
          const QXSDKKovalinStickerPickerConfigPtr& itsConfig, const Sources& itsSources)
        : sources(itsSources)
        , friendState(itsFriendState)
        , config(itsConfig)
    {
    }

    const Sources sources;
    const std::shared_ptr<QXSDKKovalinFriendState> friendState;
    const QXSDKKovalinStickerPickerConfigPtr config; // never null

    const double coldStartTime = kovalin::platform::currentTimeSeconds();
    QXSDKKovalinSearchSequence searchSequence;
    const QXSDKKovalinTagTileFactory tagTileFactory = _newTagTileFactory(*config->theme());
    const bool isSearchBarVisible = config->showSearchBar();
    const bool areSearchPillsVisible = config->showSearchPills();
    const QXSDKKovalinStickerGridController::Ptr gridController =
        QXSDKKovalinStickerGridController::create(nullptr, config, sources.cache);
    const std::shared_ptr<QXSDKKovalinTagSelectorView> tagSelector =
        QXSDKKovalinTagSelectorView::create(QRectF(), config);
    const std::shared_ptr<KovalinSearchBarView> searchBar =
        kovalin::platform::makeView<KovalinSearchBarView>(QRectF(), config);
    std::shared_ptr<QXSDKKovalinTagResultsView> tagResultsView; // the last one, also when it has left the screen

    /// What the grid was given last, which knows the popular list again: without a friend the grid shows a part of it.
    KovalinStickerListPtr givenKovalins;
    std::optional<QString> searchTerm; // the last from outside
    QXSDKKovalinCategory searchCategory = QXSDKKovalinCategoryNone;
    std::weak_ptr<KovalinStickerPickerContentViewDelegate> delegate;
    QString friendLinkageId;

private:
    /// A theme's own colours say what a tag is; only the picker's set leaves packs theirs.
    [[nodiscard]] static QXSDKKovalinTagTileFactory _newTagTileFactory(const QXSDKKovalinStickerPickerTheme& theme)
    {
        const QList<QColor> colors = theme.searchPillColors().value_or(QList<QColor>());
        const bool isOwnSet = colors.isEmpty();
        return {isOwnSet ? QXSDKKovalinTagTileFactory::defaultColors() : colors,
                theme.shouldRandomizeSearchPillColors(), isOwnSet};
    }
};
