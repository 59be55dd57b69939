#pragma once

#include "platform/ui/CollectionViewCell.h"

#include <QtCore/QUrl>

#include <memory>
#include <optional>

class QXSDKKovalinCache;
class QXSDKKovalinStickerCollectionViewCell;
class QXSDKKovalinStickerPickerTheme;

namespace kovalin::platform {
class DataTask;
class ImageView;
} // namespace kovalin::platform

/// Told how the load of a cell's picture ended. Main thread only.
class QXSDKKovalinStickerCollectionViewCellDelegate {
public:
    virtual ~QXSDKKovalinStickerCollectionViewCellDelegate();

    /// The cell has the picture of its present address; it may still be dissolving in.
    virtual void
    stickerCollectionViewCellLoadDidSucceed(const std::shared_ptr<QXSDKKovalinStickerCollectionViewCell>& cell) = 0;

    /// A load of the cell's ended without a picture.
    virtual void
    stickerCollectionViewCellLoadDidFail(const std::shared_ptr<QXSDKKovalinStickerCollectionViewCell>& cell) = 0;
};

/// A tile of the sticker grid, which loads its picture itself. Thread and lifetime as of `View`; when it goes while it
/// loads, nobody is told.
///
/// | State   | `isLoading` | `isLoaded` | shown                                              |
/// |---------|-------------|------------|----------------------------------------------------|
/// | idle    | false       | as it was  | the loading picture, or nothing without an address |
/// | loading | true        | false      | the loading picture                                |
/// | loaded  | false       | true       | the sticker                                        |
/// | failed  | false       | false      | the retry icon alone                               |
///
/// An address taken away changes what is shown and nothing else: a cell that was loading still says so.
class QXSDKKovalinStickerCollectionViewCell final : public kovalin::platform::CollectionViewCell {
    Q_OBJECT

public:
    /// Pictures come from `cache`, which isn't null.
    explicit QXSDKKovalinStickerCollectionViewCell(const std::shared_ptr<QXSDKKovalinCache>& cache);
    ~QXSDKKovalinStickerCollectionViewCell() override;

    /// The address of what is shown or is to be; absent at first.
    [[nodiscard]] const std::optional<QUrl>& imageURL() const;
    /// Loads another picture, and gives up the one that is loading. With the address that it has, the cell keeps what
    /// it shows, also a failure. Absent shows nothing.
    void setImageURL(const std::optional<QUrl>& imageURL);
    /// Loads the picture of `imageURL()` anew.
    void reload();

    [[nodiscard]] bool isLoading() const;
    [[nodiscard]] bool isLoaded() const;
    void setDelegate(const std::weak_ptr<QXSDKKovalinStickerCollectionViewCellDelegate>& delegate);

    /// The loading picture is shown in the colour of titles.
    void applyTheme(const QXSDKKovalinStickerPickerTheme& theme);

    /// Shows the sticker, or the loading picture.
    [[nodiscard]] const std::shared_ptr<kovalin::platform::ImageView>& imageView() const;

    /// A download that the cell is to keep alive; null at first, and the cell does nothing else with it.
    [[nodiscard]] const std::shared_ptr<kovalin::platform::DataTask>& task() const;
    void setTask(const std::shared_ptr<kovalin::platform::DataTask>& task);

    /// A pressed tile shrinks.
    void setHighlighted(bool isHighlighted) override;

    void layoutSubviews() override;

protected:
    void didMoveToWindow() override;
    void devicePixelRatioDidChange() override;

private:
    struct State;

    void _loadImageURL(const std::optional<QUrl>& imageURL);
    void _loadDidEnd(const QUrl& imageURL, const QImage& image);
    void _showLoadingImage();
    void _clearImage();
    void _updatePictures();

    const std::unique_ptr<State> _tile;
};
