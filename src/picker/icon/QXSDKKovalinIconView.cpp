#include "picker/icon/QXSDKKovalinIconView.h"

#include "content/QXSDKKovalinCache.h"
#include "content/QXSDKKovalinClient.h"
#include "content/QXSDKKovalinFriendState.h"
#include "kits/login/QXSDKLoginClient.h"
#include "picker/config/KovalinImage.h"
#include "picker/views/PickerLog.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Application.h"
#include "platform/foundation/Log.h"
#include "platform/ui/ImageView.h"

#include <utility>

using namespace kovalin::platform;

namespace {

/// Null for a text that is no address.
std::shared_ptr<const QUrl> urlWithString(const QByteArray& text)
{
    const QUrl url = QUrl::fromEncoded(text, QUrl::StrictMode);
    return url.isValid() ? std::make_shared<const QUrl>(url) : nullptr;
}

/// Each byte of UTF-8 that an address can't have is escaped, and with it "%" and "#": the text isn't taken for an
/// escaped one.
QByteArray percentEscaped(const QString& text)
{
    return text.toUtf8().toPercentEncoding("!$&'()*+,/:;=?@");
}

} // namespace

struct QXSDKKovalinIconView::State {
    explicit State(const std::shared_ptr<QXSDKKovalinCache>& pictures)
        : cache(pictures)
    {
    }

    const std::shared_ptr<QXSDKKovalinCache> cache;

    const std::shared_ptr<ImageView> imageView = makeView<ImageView>();
    Address lastUrl; // that an answer has to be for
    Address selfieUrl;
    bool isLinked = false;
    QImage defaultImage;
    KovalinStickerPtr sticker;

    bool hasOwnDefaultImage = false; // the host's
    bool showsDefaultImage = false;
    /// That the picker's own default picture is drawn for.
    QSizeF drawnSize;
    double drawnRatio = 0;
};

std::shared_ptr<QXSDKKovalinIconView> QXSDKKovalinIconView::create()
{
    return create(QXSDKKovalinCache::shared());
}

std::shared_ptr<QXSDKKovalinIconView> QXSDKKovalinIconView::create(const std::shared_ptr<QXSDKKovalinCache>& cache)
{
    const std::shared_ptr<QXSDKKovalinIconView> made(new QXSDKKovalinIconView(cache), ViewDeleter());
    made->drawDefaultImage();
    made->showDefaultImage();
    made->setLinked(QXSDKLoginClient::shared()->isUserLoggedIn());
    // Once more: so it has always asked.
    made->_updateImageView();
    made->addSubview(made->_icon->imageView);
    made->setAccessibilityIdentifier(QStringLiteral("qxsdk_kovalin_icon"));
    QXSDKLoginClient::addLoginStatusObserver(made);
    NotificationCenter::defaultCenter().addObserver(made, &QXSDKKovalinIconView::applicationDidBecomeActive,
                                                    UIApplicationDidBecomeActiveNotification);
    return made;
}

QXSDKKovalinIconView::QXSDKKovalinIconView(const std::shared_ptr<QXSDKKovalinCache>& cache)
    : _icon(std::make_unique<State>(cache))
{
    _icon->imageView->setContentMode(ContentMode::AspectFit);
}

QXSDKKovalinIconView::~QXSDKKovalinIconView() = default;

bool QXSDKKovalinIconView::linked() const
{
    return _icon->isLinked;
}

void QXSDKKovalinIconView::setLinked(bool linked)
{
    assertOnMainThread();
    _icon->isLinked = linked;
    _updateImageView();
}

QImage QXSDKKovalinIconView::defaultImage() const
{
    return _icon->defaultImage;
}

void QXSDKKovalinIconView::setDefaultImage(const QImage& image)
{
    assertOnMainThread();
    _icon->defaultImage = image;
    _icon->hasOwnDefaultImage = true;
}

const KovalinStickerPtr& QXSDKKovalinIconView::sticker() const
{
    return _icon->sticker;
}

void QXSDKKovalinIconView::setSticker(const KovalinStickerPtr& sticker)
{
    assertOnMainThread();
    _icon->sticker = sticker;
}

// What is to be shown

void QXSDKKovalinIconView::updateWithKovalinSticker(const KovalinStickerPtr& sticker,
                                                    const QXSDKKovalinFriendState& friendState,
                                                    const std::function<void(bool isChanged)>& completion)
{
    assertOnMainThread();
    const bool isChanged = sticker != _icon->sticker;
    if (isChanged) {
        _icon->sticker = sticker;
    }
    if (sticker) {
        const auto url = sticker->imageURLWithFriendAvatarId(friendState.friendAvatarId());
        _setImageUrl(url ? urlWithString(percentEscaped(*url)) : nullptr);
    } else {
        _setImageUrl(_icon->selfieUrl);
        _icon->lastUrl = _icon->selfieUrl;
    }
    completion(isChanged);
}

void QXSDKKovalinIconView::qxsdkLoginLinkDidSucceed()
{
    setLinked(true);
}

void QXSDKKovalinIconView::qxsdkLoginDidUnlink()
{
    setLinked(false);
}

void QXSDKKovalinIconView::applicationDidBecomeActive()
{
    setLinked(QXSDKLoginClient::shared()->isUserLoggedIn());
}

void QXSDKKovalinIconView::_updateImageView()
{
    if (_icon->isLinked) {
        _fetchLatestAvatar();
    } else {
        _setImageUrl(nullptr);
    }
}

void QXSDKKovalinIconView::_fetchLatestAvatar()
{
    QXSDKKovalinClient::fetchAvatarURLWithCompletion(
        [weakSelf = weak_from_this()](const std::optional<QString>& avatarURL, const std::optional<QXSDKError>& error) {
            if (error) {
                KOVALIN_LOG_ERROR(kovalinPicker, QStringLiteral("Failed to load kovalin avatar"));
                return;
            }
            if (const auto self = weakSelf.lock()) {
                static_cast<QXSDKKovalinIconView&>(*self).avatarDidArrive(avatarURL);
            }
        });
}

void QXSDKKovalinIconView::avatarDidArrive(const std::optional<QString>& avatarURL)
{
    if (!avatarURL) {
        _setImageUrl(nullptr);
        return;
    }
    _icon->selfieUrl = urlWithString(avatarURL->toUtf8());
    _setImageUrl(_icon->selfieUrl);
}

void QXSDKKovalinIconView::_setImageUrl(const Address& url)
{
    if (url && _icon->lastUrl && url->toEncoded() == _icon->lastUrl->toEncoded()) {
        return;
    }
    _icon->lastUrl = url;
    const std::weak_ptr<View> weakSelf = weak_from_this();
    if (!url) {
        dispatchMain([weakSelf] {
            if (const auto self = weakSelf.lock()) {
                static_cast<QXSDKKovalinIconView&>(*self).showDefaultImage();
            }
        });
        return;
    }
    const auto callback = std::make_shared<const KovalinImageCallback>([weakSelf, url](const QImage& image) {
        dispatchMain([weakSelf, url, image] {
            if (const auto self = weakSelf.lock()) {
                static_cast<QXSDKKovalinIconView&>(*self).fetchDidEnd(url, image);
            }
        });
    });
    _icon->cache->fetchKovalinWithURL(*url, callback);
}

void QXSDKKovalinIconView::fetchDidEnd(const Address& url, const QImage& image)
{
    // The same object: an answer to an older request for this address doesn't count.
    if (url == _icon->lastUrl && !image.isNull()) {
        _icon->showsDefaultImage = false;
        _icon->imageView->setImage(image);
    }
}

// What is shown

void QXSDKKovalinIconView::showDefaultImage()
{
    _icon->showsDefaultImage = true;
    _icon->imageView->setImage(_icon->defaultImage);
}

void QXSDKKovalinIconView::drawDefaultImage()
{
    if (_icon->hasOwnDefaultImage) {
        return;
    }
    const VectorImage picture = kovalinImageNamed(QStringLiteral("kovalin-icon"));
    const QSizeF area = bounds().size();
    const QSizeF size = area.isEmpty() ? picture.size() : picture.size().scaled(area, Qt::KeepAspectRatio);
    const double ratio = devicePixelRatio();
    if (std::exchange(_icon->drawnSize, size) == size && _icon->drawnRatio == ratio) {
        return;
    }
    _icon->drawnRatio = ratio;
    _icon->defaultImage = picture.image(size, ratio);
    if (_icon->showsDefaultImage) {
        showDefaultImage();
    }
}

void QXSDKKovalinIconView::layoutSubviews()
{
    _icon->imageView->setFrame(bounds());
    drawDefaultImage();
}

void QXSDKKovalinIconView::didMoveToWindow()
{
    if (window()) {
        drawDefaultImage();
    }
}

void QXSDKKovalinIconView::devicePixelRatioDidChange()
{
    drawDefaultImage();
}
