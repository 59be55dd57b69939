#include "picker/status/QXSDKKovalinLoginView.h"

#include "picker/config/QXSDKKovalinLanguage.h"
#include "picker/status/StatusBlock.h"
#include "platform/dispatch/ThreadCheck.h"

using namespace kovalin::platform;

QXSDKKovalinLoginViewDelegate::~QXSDKKovalinLoginViewDelegate() = default;

struct QXSDKKovalinLoginView::State {
    explicit State(const QXSDKKovalinStickerPickerThemePtr& theme)
        : block(*theme, QStringLiteral("login_title"), QStringLiteral("login_bottom_text"))
    {
    }

    StatusBlock block;
    const std::shared_ptr<QXSDKLoginButton> loginButton =
        makeView<QXSDKLoginButton>(QXSDKLoginClient::LoginCompletion(), QXSDKKovalinCurrentLanguage());
    std::weak_ptr<QXSDKKovalinLoginViewDelegate> delegate;
};

std::shared_ptr<QXSDKKovalinLoginView> QXSDKKovalinLoginView::create(const QRectF& frame,
                                                                     const QXSDKKovalinStickerPickerConfigPtr& config)
{
    const std::shared_ptr<QXSDKKovalinLoginView> made(new QXSDKKovalinLoginView(frame, config), ViewDeleter());
    made->_view->loginButton->setDelegate(made);
    return made;
}

QXSDKKovalinLoginView::QXSDKKovalinLoginView(const QRectF& frame, const QXSDKKovalinStickerPickerConfigPtr& config)
    : _view(std::make_unique<State>(config ? config->theme() : std::make_shared<QXSDKKovalinStickerPickerTheme>()))
{
    setFrame(frame);
    _view->block.drawGraphic(devicePixelRatio());
    addSubview(_view->loginButton);
    addSubview(_view->block.kovalinGraphic);
    addSubview(_view->block.titleLabel);
    addSubview(_view->block.bottomLabel);
}

QXSDKKovalinLoginView::~QXSDKKovalinLoginView() = default;

void QXSDKKovalinLoginView::setDelegate(const std::weak_ptr<QXSDKKovalinLoginViewDelegate>& delegate)
{
    assertOnMainThread();
    _view->delegate = delegate;
}

QXSDKKovalinViewType QXSDKKovalinLoginView::type() const
{
    return QXSDKKovalinViewTypeLogin;
}

void QXSDKKovalinLoginView::layoutSubviews()
{
    const double width = frame().width();
    const double buttonBottom = _view->block.layOutTexts(StatusBlock::placeIn(*this));
    QXSDKLoginButton& button = *_view->loginButton;
    button.sizeToFit();
    const QSizeF size = button.frame().size();
    button.setFrame(QRectF(QPointF((width - size.width()) / 2, buttonBottom - size.height()), size));
    _view->block.standGraphicOn(button.frame(), width);
}

void QXSDKKovalinLoginView::loginButtonDidTap()
{
    if (const auto delegate = _view->delegate.lock()) {
        delegate->loginViewDidTapLoginButton();
    }
}

void QXSDKKovalinLoginView::didMoveToWindow()
{
    if (window()) {
        _view->block.drawGraphic(devicePixelRatio());
    }
}

void QXSDKKovalinLoginView::devicePixelRatioDidChange()
{
    _view->block.drawGraphic(devicePixelRatio());
}
