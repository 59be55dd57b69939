#include "picker/status/QXSDKKovalinErrorView.h"

#include "kits/core/QXSDKFont.h"
#include "picker/config/KovalinColors.h"
#include "picker/config/KovalinString.h"
#include "platform/ui/ActivityIndicator.h"
#include "platform/ui/Button.h"
#include "platform/ui/Label.h"

#include <algorithm>
#include <utility>

using namespace kovalin::platform;

namespace {

// Points.
constexpr double titleFontSize = 18;
constexpr double buttonFontSize = 17;
constexpr double maxContentWidth = 270;
constexpr double messageSpacing = 5; // between it and the title
constexpr double buttonSpacing = 42; // between it and the message
constexpr QSizeF buttonSize(222, 48);
constexpr double buttonCornerRadius = 24;

QString retryText()
{
    return kovalinStringWithKey(QStringLiteral("retry"));
}

} // namespace

struct QXSDKKovalinErrorView::State {
    const std::shared_ptr<Label> titleLabel = makeView<Label>();
    const std::shared_ptr<Label> messageLabel = makeView<Label>();
    const std::shared_ptr<Button> retryButton = makeView<Button>();
    const std::shared_ptr<ActivityIndicator> loadingSpinner = makeView<ActivityIndicator>();
    std::function<void()> retryBlock;
};

QXSDKKovalinErrorView::QXSDKKovalinErrorView(const QString& title, const QString& message,
                                             std::function<void()> retryBlock,
                                             const QXSDKKovalinStickerPickerConfigPtr& config)
    : _view(std::make_unique<State>())
{
    const auto theme = config ? config->theme() : std::make_shared<QXSDKKovalinStickerPickerTheme>();
    _view->retryBlock = std::move(retryBlock);
    setUpTexts(title, message, *theme);
    setUpButton(*theme);
    _view->loadingSpinner->setHidden(true);
    addSubview(_view->loadingSpinner);
}

QXSDKKovalinErrorView::~QXSDKKovalinErrorView()
{
    // Somebody else may still hold it.
    _view->retryButton->setOnTouchUpInside({});
}

void QXSDKKovalinErrorView::setUpTexts(const QString& title, const QString& message,
                                       const QXSDKKovalinStickerPickerTheme& theme)
{
    _view->titleLabel->setFont(qxsdkBoldFontOfSize(titleFontSize));
    _view->titleLabel->setTextColor(theme.titleTextColor());
    _view->titleLabel->setText(title);
    _view->messageLabel->setFont(qxsdkRegularFontOfSize(systemFontSize));
    // In all themes.
    _view->messageLabel->setTextColor(kovalinGreyTextColor());
    _view->messageLabel->setText(message);
    for (const auto& label : {_view->titleLabel, _view->messageLabel}) {
        label->setTextAlignment(TextAlignment::Center);
        label->setNumberOfLines(0);
        addSubview(label);
    }
}

void QXSDKKovalinErrorView::setUpButton(const QXSDKKovalinStickerPickerTheme& theme)
{
    Button& button = *_view->retryButton;
    button.setBackgroundColor(theme.errorRed());
    button.setCornerRadius(buttonCornerRadius);
    button.setTitle(retryText());
    button.setTitleFont(qxsdkBoldFontOfSize(buttonFontSize));
    button.setTitleColor(Qt::white);
    button.setOnTouchUpInside([this] { retryPressed(); });
    addSubview(_view->retryButton);
}

QXSDKKovalinViewType QXSDKKovalinErrorView::type() const
{
    return QXSDKKovalinViewTypeError;
}

void QXSDKKovalinErrorView::layoutSubviews()
{
    const QSizeF size = bounds().size();
    const double contentWidth = std::min(size.width(), maxContentWidth);
    const QSizeF most(contentWidth, size.height());
    const double titleHeight = _view->titleLabel->sizeThatFits(most).height();
    const double messageHeight = _view->messageLabel->sizeThatFits(most).height();
    const double total = titleHeight + messageSpacing + messageHeight + buttonSpacing + buttonSize.height();

    const double x = (size.width() - contentWidth) / 2;
    const double y = (size.height() - total) / 2;
    _view->titleLabel->setFrame({x, y, contentWidth, titleHeight});
    const double messageY = y + titleHeight + messageSpacing;
    _view->messageLabel->setFrame({x, messageY, contentWidth, messageHeight});
    const QPointF button((size.width() - buttonSize.width()) / 2, messageY + messageHeight + buttonSpacing);
    _view->retryButton->setFrame(QRectF(button, buttonSize));
    _view->loadingSpinner->setCenter(_view->retryButton->center());
}

void QXSDKKovalinErrorView::retryPressed()
{
    const auto self = weak_from_this().lock();
    _view->retryButton->setTitle({});
    // It is still called so.
    _view->retryButton->setAccessibilityLabel(retryText());
    _view->loadingSpinner->setHidden(false);
    _view->loadingSpinner->startAnimating();
    if (const auto block = _view->retryBlock) {
        block();
    }
}
