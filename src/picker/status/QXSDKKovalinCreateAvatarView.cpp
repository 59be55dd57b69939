#include "picker/status/QXSDKKovalinCreateAvatarView.h"

#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/QXSDKURLOpener.h"
#include "picker/config/KovalinString.h"
#include "picker/status/QXSDKKovalinRoundedButton.h"
#include "picker/status/StatusBlock.h"
#include "picker/views/PickerLog.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Log.h"

using namespace kovalin::platform;

namespace {

constexpr double buttonHeight = 48; // points

QString avatarAppUrl()
{
    return QStringLiteral("kovalin-sdk://");
}

} // namespace

QXSDKKovalinCreateAvatarViewDelegate::~QXSDKKovalinCreateAvatarViewDelegate() = default;

struct QXSDKKovalinCreateAvatarView::State {
    explicit State(const QXSDKKovalinStickerPickerThemePtr& theme)
        : block(*theme, QStringLiteral("create_avatar_title"), QStringLiteral("create_avatar_bottom_text"))
    {
    }

    StatusBlock block;
    const std::shared_ptr<QXSDKKovalinRoundedButton> createAvatarButton = makeView<QXSDKKovalinRoundedButton>();
    std::weak_ptr<QXSDKKovalinCreateAvatarViewDelegate> delegate;
};

QXSDKKovalinCreateAvatarView::QXSDKKovalinCreateAvatarView(const QRectF& frame,
                                                           const QXSDKKovalinStickerPickerConfigPtr& config)
    : _view(std::make_unique<State>(config ? config->theme() : std::make_shared<QXSDKKovalinStickerPickerTheme>()))
{
    setFrame(frame);
    _view->createAvatarButton->setTitle(kovalinStringWithKey(QStringLiteral("create_avatar")));
    _view->createAvatarButton->setOnTouchUpInside([this] { createAvatarPressed(); });
    _view->block.drawGraphic(devicePixelRatio());
    addSubview(_view->block.titleLabel);
    addSubview(_view->block.bottomLabel);
    addSubview(_view->createAvatarButton);
    addSubview(_view->block.kovalinGraphic);
}

QXSDKKovalinCreateAvatarView::~QXSDKKovalinCreateAvatarView()
{
    // Somebody else may still hold it.
    _view->createAvatarButton->setOnTouchUpInside({});
}

void QXSDKKovalinCreateAvatarView::setDelegate(const std::weak_ptr<QXSDKKovalinCreateAvatarViewDelegate>& delegate)
{
    assertOnMainThread();
    _view->delegate = delegate;
}

QXSDKKovalinViewType QXSDKKovalinCreateAvatarView::type() const
{
    return QXSDKKovalinViewTypeCreateAvatar;
}

void QXSDKKovalinCreateAvatarView::layoutSubviews()
{
    const QRectF place = StatusBlock::placeIn(*this);
    const double buttonBottom = _view->block.layOutTexts(place);
    _view->createAvatarButton->setFrame({place.x(), buttonBottom - buttonHeight, place.width(), buttonHeight});
    _view->block.standGraphicOn(_view->createAvatarButton->frame(), frame().width());
}

void QXSDKKovalinCreateAvatarView::createAvatarPressed()
{
    const auto self = weak_from_this().lock();
    if (const auto delegate = _view->delegate.lock()) {
        delegate->createAvatarViewDidTapCreateAvatarButton();
    }
    const auto setup = QXSDKClientSetup::shared();
    const auto opener = QXSDKURLOpener::shared();
    if (_isKovalinInstalled()) {
        opener->openURL(QUrl(avatarAppUrl() + QStringLiteral("login?client_id=") + setup->clientId), {});
    } else if (!setup->avatarAppStoreUrl.isEmpty()) {
        opener->openURL(QUrl(setup->avatarAppStoreUrl), {});
    } else {
        KOVALIN_LOG_ERROR(kovalinPicker,
                          QStringLiteral("The client setup doesn't tell where the avatar app can be had"));
    }
}

bool QXSDKKovalinCreateAvatarView::_isKovalinInstalled()
{
    return QXSDKURLOpener::shared()->canOpenURL(QUrl(avatarAppUrl()));
}

void QXSDKKovalinCreateAvatarView::didMoveToWindow()
{
    if (window()) {
        _view->block.drawGraphic(devicePixelRatio());
    }
}

void QXSDKKovalinCreateAvatarView::devicePixelRatioDidChange()
{
    _view->block.drawGraphic(devicePixelRatio());
}
