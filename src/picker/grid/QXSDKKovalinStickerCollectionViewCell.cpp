#include "picker/grid/QXSDKKovalinStickerCollectionViewCell.h"

#include "content/QXSDKKovalinCache.h"
#include "picker/config/QXSDKKovalinStickerPickerTheme.h"
#include "picker/views/DrawnPictures.h"
#include "picker/views/KovalinViewHelpers.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/Animation.h"
#include "platform/ui/ImageView.h"

#include <utility>

using namespace kovalin::platform;

namespace {

/// Points from the tile's edges to the picture.
constexpr double imageInset = 4;
constexpr AnimationSeconds dissolveDuration(0.25);

} // namespace

QXSDKKovalinStickerCollectionViewCellDelegate::~QXSDKKovalinStickerCollectionViewCellDelegate() = default;

struct QXSDKKovalinStickerCollectionViewCell::State {
    explicit State(const std::shared_ptr<QXSDKKovalinCache>& pictures)
        : cache(pictures)
    {
    }

    const std::shared_ptr<QXSDKKovalinCache> cache;
    const std::shared_ptr<ImageView> imageView = makeView<ImageView>();
    const std::shared_ptr<ImageView> retryIcon = makeView<ImageView>();
    std::weak_ptr<QXSDKKovalinStickerCollectionViewCellDelegate> delegate;

    KovalinImageCallbackPtr callback; // of the load under way, else null
    bool isLoading = false;
    bool isLoaded = false;
    std::optional<QUrl> imageURL;
    std::shared_ptr<DataTask> task;

    bool showsLoadingImage = false;
};

QXSDKKovalinStickerCollectionViewCell::QXSDKKovalinStickerCollectionViewCell(
    const std::shared_ptr<QXSDKKovalinCache>& cache)
    : _tile(std::make_unique<State>(cache))
{
    // For both pictures, since one dissolves into the other.
    _tile->imageView->setContentMode(ContentMode::AspectFit);
    _tile->retryIcon->setHidden(true);
    addSubview(_tile->imageView);
    addSubview(_tile->retryIcon);
    setAccessibilityIdentifier(QStringLiteral("qxsdk_kovalin_sticker"));
    _tile->showsLoadingImage = true;
    _updatePictures();
    _tile->retryIcon->sizeToFit();
}

QXSDKKovalinStickerCollectionViewCell::~QXSDKKovalinStickerCollectionViewCell() = default;

// Loading

const std::optional<QUrl>& QXSDKKovalinStickerCollectionViewCell::imageURL() const
{
    return _tile->imageURL;
}

void QXSDKKovalinStickerCollectionViewCell::setImageURL(const std::optional<QUrl>& imageURL)
{
    assertOnMainThread();
    if (imageURL && _tile->imageURL == imageURL) {
        return;
    }
    if (_tile->callback && _tile->imageURL) {
        _tile->cache->cancelKovalinFetch(_tile->callback, *_tile->imageURL);
    }
    _tile->imageURL = imageURL;
    _loadImageURL(imageURL);
}

void QXSDKKovalinStickerCollectionViewCell::reload()
{
    assertOnMainThread();
    _loadImageURL(_tile->imageURL);
}

void QXSDKKovalinStickerCollectionViewCell::_loadImageURL(const std::optional<QUrl>& imageURL)
{
    _tile->retryIcon->setHidden(true);
    if (!imageURL) {
        _clearImage();
        return;
    }
    _showLoadingImage();
    _tile->isLoaded = false;
    _tile->isLoading = true;
    _tile->callback = std::make_shared<const KovalinImageCallback>(
        [weakSelf = weak_from_this(), url = *imageURL](const QImage& image) {
            dispatchMain([weakSelf, url, image] {
                if (const auto self = weakSelf.lock()) {
                    static_cast<QXSDKKovalinStickerCollectionViewCell&>(*self)._loadDidEnd(url, image);
                }
            });
        });
    _tile->cache->fetchKovalinWithURL(*imageURL, _tile->callback);
}

void QXSDKKovalinStickerCollectionViewCell::_loadDidEnd(const QUrl& imageURL, const QImage& image)
{
    const auto self = std::static_pointer_cast<QXSDKKovalinStickerCollectionViewCell>(shared_from_this());
    const auto delegate = _tile->delegate.lock();
    _tile->isLoading = false;
    _tile->callback.reset();
    // Whatever the cell shows by now: a load that was given up in time doesn't come here.
    if (image.isNull()) {
        _tile->retryIcon->setHidden(false);
        _clearImage();
        if (delegate) {
            delegate->stickerCollectionViewCellLoadDidFail(self);
        }
        return;
    }
    if (_tile->imageURL != imageURL) {
        return;
    }
    _tile->isLoaded = true;
    transition(_tile->imageView, dissolveDuration, [&] {
        _tile->showsLoadingImage = false;
        _tile->imageView->setImage(image);
    });
    if (delegate) {
        delegate->stickerCollectionViewCellLoadDidSucceed(self);
    }
}

bool QXSDKKovalinStickerCollectionViewCell::isLoading() const
{
    return _tile->isLoading;
}

bool QXSDKKovalinStickerCollectionViewCell::isLoaded() const
{
    return _tile->isLoaded;
}

void QXSDKKovalinStickerCollectionViewCell::setDelegate(
    const std::weak_ptr<QXSDKKovalinStickerCollectionViewCellDelegate>& delegate)
{
    assertOnMainThread();
    _tile->delegate = delegate;
}

const std::shared_ptr<DataTask>& QXSDKKovalinStickerCollectionViewCell::task() const
{
    return _tile->task;
}

void QXSDKKovalinStickerCollectionViewCell::setTask(const std::shared_ptr<DataTask>& task)
{
    assertOnMainThread();
    _tile->task = task;
}

// What is shown

const std::shared_ptr<ImageView>& QXSDKKovalinStickerCollectionViewCell::imageView() const
{
    return _tile->imageView;
}

void QXSDKKovalinStickerCollectionViewCell::applyTheme(const QXSDKKovalinStickerPickerTheme& theme)
{
    assertOnMainThread();
    _tile->imageView->setTintColor(theme.titleTextColor());
    _updatePictures();
}

void QXSDKKovalinStickerCollectionViewCell::_showLoadingImage()
{
    if (!std::exchange(_tile->showsLoadingImage, true)) {
        // Takes the sticker away at once, even while it is being prepared for another size.
        _tile->imageView->setImage({});
    }
    _updatePictures();
}

void QXSDKKovalinStickerCollectionViewCell::_clearImage()
{
    _tile->showsLoadingImage = false;
    _tile->imageView->setImage({});
}

void QXSDKKovalinStickerCollectionViewCell::_updatePictures()
{
    const double ratio = devicePixelRatio();
    _tile->retryIcon->setImage(drawnPicture(QStringLiteral("retry"), ratio));
    if (_tile->showsLoadingImage) {
        // Drawn for these very pixels and in its colour, it is shown with the next frame: a picture that is first
        // prepared in the background would leave the former sticker on show.
        const QImage loading = drawnTemplatePicture(QStringLiteral("loading"), _tile->imageView->bounds().size(), ratio,
                                                    _tile->imageView->tintColor());
        _tile->imageView->setImage(loading);
    }
}

void QXSDKKovalinStickerCollectionViewCell::setHighlighted(bool isHighlighted)
{
    CollectionViewCell::setHighlighted(isHighlighted);
    animateViewForPressedState(*this, isHighlighted);
}

void QXSDKKovalinStickerCollectionViewCell::layoutSubviews()
{
    _tile->imageView->setFrame(bounds().adjusted(imageInset, imageInset, -imageInset, -imageInset));
    _tile->retryIcon->setCenter(_tile->imageView->center());
    _updatePictures();
}

void QXSDKKovalinStickerCollectionViewCell::didMoveToWindow()
{
    CollectionViewCell::didMoveToWindow();
    _updatePictures();
}

void QXSDKKovalinStickerCollectionViewCell::devicePixelRatioDidChange()
{
    CollectionViewCell::devicePixelRatioDidChange();
    _updatePictures();
}
