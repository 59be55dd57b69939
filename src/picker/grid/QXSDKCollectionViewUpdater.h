#pragma once

#include "platform/ui/Animation.h"
#include "platform/ui/CollectionView.h"

#include <QtCore/QList>

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

/// Stands between a list of items and a collection view. When the list changes, it plays one batch of moves, insertions
/// and deletions with a spring: what is on screen before and after glides to its new place, everything else goes and
/// comes.
///
/// `Item` has `isEqual` and `hash`, which know it by its value. A list holds each item once, none of them null; where
/// one comes twice the view reports the batch and reloads. An index path is a place in the list.
///
/// Main thread only. Holds the view. Batches don't wait for each other: a change during an animation starts from what
/// the change before it led to.
template <class Item>
class QXSDKCollectionViewUpdater final {
public:
    using ItemPtr = std::shared_ptr<const Item>;
    /// A list whose identity counts.
    using List = std::shared_ptr<const QList<ItemPtr>>;

    /// The view, which isn't null, will show `data` without an animation. Null is an empty list.
    explicit QXSDKCollectionViewUpdater(std::shared_ptr<kovalin::platform::CollectionView> collectionView,
                                        const List& data = nullptr)
        : _collectionView(std::move(collectionView))
        , _data(_present(data))
        , _displayedData(_data)
    {
    }

    /// What should be shown, the very list that was set; never null.
    [[nodiscard]] const List& data() const { return _data; }

    /// What the view shows: its data source answers by this one. Behind `data` while a batch begins. Never null.
    [[nodiscard]] const List& displayedData() const { return _displayedData; }

    /// Plays the change before it returns. Null is an empty list.
    void setData(const List& data)
    {
        // Cells that are still missing, as after a scroll, are cells of what was displayed: data sources look at both
        // lists.
        kovalin::platform::withoutAnimation([this] { _collectionView->layoutIfNeeded(); });
        _data = _present(data);
        _updateDisplayedData();
    }

private:
    struct HashOfValue {
        std::size_t operator()(const Item* item) const { return item->hash(); }
    };
    struct EqualValue {
        bool operator()(const Item* a, const Item* b) const { return a->isEqual(*b); }
    };
    using PlacesByItem = std::unordered_map<const Item*, qsizetype, HashOfValue, EqualValue>;

    /// The places of a list that are yet to be dealt with.
    class Places final {
    public:
        explicit Places(qsizetype count)
            : _isIn(static_cast<std::size_t>(count), true)
        {
        }
        void remove(qsizetype place) { _isIn[static_cast<std::size_t>(place)] = false; }
        [[nodiscard]] QList<qsizetype> rest() const
        {
            QList<qsizetype> places;
            for (std::size_t place = 0; place < _isIn.size(); ++place) {
                if (_isIn[place]) {
                    places.append(static_cast<qsizetype>(place));
                }
            }
            return places;
        }

    private:
        std::vector<bool> _isIn;
    };

    [[nodiscard]] static List _present(const List& list)
    {
        return list ? list : std::make_shared<const QList<ItemPtr>>();
    }

    void _updateDisplayedData()
    {
        using namespace kovalin::platform;
        constexpr AnimationSeconds duration(0.4F);
        constexpr double damping = 0.7F;

        const QList<qsizetype> visible = _collectionView->indexPathsForVisibleItems();
        const PlacesByItem newPlaces = _newPlacesOnScreen(visible);
        animate(duration, AnimationSeconds(0), damping, 0,
                [&] { _collectionView->performBatchUpdates([&] { _playBatch(visible, newPlaces); }); });
    }

    /// Only places on screen count; of equal items the last.
    [[nodiscard]] PlacesByItem _newPlacesOnScreen(const QList<qsizetype>& visible) const
    {
        PlacesByItem places;
        for (const qsizetype place : visible) {
            if (place < _data->size()) {
                places.insert_or_assign(_data->at(place).get(), place);
            }
        }
        return places;
    }

    void _playBatch(const QList<qsizetype>& visible, const PlacesByItem& newPlaces)
    {
        Places inserted(_data->size());
        Places deleted(_displayedData->size());
        for (const qsizetype place : visible) {
            if (place >= _displayedData->size()) {
                continue;
            }
            if (const auto found = newPlaces.find(_displayedData->at(place).get()); found != newPlaces.end()) {
                _collectionView->moveItemAtIndexPath(place, found->second);
                inserted.remove(found->second);
                deleted.remove(place);
            }
        }
        _collectionView->insertItemsAtIndexPaths(inserted.rest());
        _collectionView->deleteItemsAtIndexPaths(deleted.rest());
        _displayedData = _data;
    }

    const std::shared_ptr<kovalin::platform::CollectionView> _collectionView;
    List _data;
    List _displayedData;
};
