#include "picker/status/QXSDKKovalinNoPermissionView.h"

#include "kits/core/QXSDKFont.h"
#include "kits/core/QXSDKTopViewController.h"
#include "kits/login/QXSDKLoginClient.h"
#include "picker/config/KovalinString.h"
#include "picker/status/QXSDKKovalinRoundedButton.h"
#include "picker/views/KovalinViewHelpers.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/ui/ActivityIndicator.h"

#include <algorithm>

using namespace kovalin::platform;

namespace {

// Points.
constexpr double maxContentWidth = 250;
constexpr double buttonSpacing = 24; // between it and the text above
constexpr double buttonHeight = 48;

} // namespace

std::optional<QList<TextRun>> QXSDKKovalinLabelText()
{
    return QXSDKKovalinLabelText(kovalinStringWithKey(QStringLiteral("turn_on_permission_title_format")),
                                 kovalinStringWithKey(QStringLiteral("turn_on_permission_action")));
}

std::optional<QList<TextRun>> QXSDKKovalinLabelText(const QString& format, const QString& action)
{
    const QString placeholder = QStringLiteral("%@");
    const qsizetype start = format.indexOf(placeholder);
    if (start < 0) {
        return std::nullopt;
    }
    return QList<TextRun>{
        {format.first(start), false}, {action, true}, {format.sliced(start + placeholder.size()), false}};
}

struct QXSDKKovalinNoPermissionView::State {
    const std::shared_ptr<Label> label = makeView<Label>();
    const std::shared_ptr<QXSDKKovalinRoundedButton> button = makeView<QXSDKKovalinRoundedButton>();
    const std::shared_ptr<ActivityIndicator> loadingSpinner = makeView<ActivityIndicator>();
};

std::shared_ptr<QXSDKKovalinNoPermissionView>
QXSDKKovalinNoPermissionView::create(const QRectF& frame, const QXSDKKovalinStickerPickerConfigPtr& config)
{
    const std::shared_ptr<QXSDKKovalinNoPermissionView> made(new QXSDKKovalinNoPermissionView(frame, config),
                                                             ViewDeleter());
    QXSDKLoginClient::addLoginStatusObserver(made);
    NotificationCenter::qxsdkCenter().addObserver(made, &QXSDKKovalinNoPermissionView::_loginDidStart,
                                                  kQXSDKLoginClientLoginStartNotification);
    return made;
}

QXSDKKovalinNoPermissionView::QXSDKKovalinNoPermissionView(const QRectF& frame,
                                                           const QXSDKKovalinStickerPickerConfigPtr& config)
    : _view(std::make_unique<State>())
{
    const auto theme = config ? config->theme() : std::make_shared<QXSDKKovalinStickerPickerTheme>();
    setFrame(frame);

    Label& label = *_view->label;
    label.setFont(qxsdkRegularFontOfSize(systemFontSize));
    label.setTextColor(theme->titleTextColor());
    label.setTextAlignment(TextAlignment::Center);
    label.setNumberOfLines(0);
    if (const auto text = QXSDKKovalinLabelText()) {
        label.setTextRuns(*text);
    }
    addSubview(_view->label);

    QXSDKKovalinRoundedButton& button = *_view->button;
    button.setTitle(kovalinStringWithKey(QStringLiteral("turn_on")));
    button.setTitleWhileDisabled({}); // the spinner shows alone
    button.setOnTouchUpInside([this] { _didTapButton(); });
    addSubview(_view->button);

    _view->loadingSpinner->setHidden(true);
    addSubview(_view->loadingSpinner);
}

QXSDKKovalinNoPermissionView::~QXSDKKovalinNoPermissionView()
{
    // Somebody else may still hold it.
    _view->button->setOnTouchUpInside({});
}

QXSDKKovalinViewType QXSDKKovalinNoPermissionView::type() const
{
    return QXSDKKovalinViewTypeNoPermission;
}

void QXSDKKovalinNoPermissionView::layoutSubviews()
{
    const QSizeF size = frame().size();
    const double contentWidth = std::min(size.width(), maxContentWidth);
    const double available = size.height() - obscuredAreaInsets(*this).bottom();
    const double labelHeight = _view->label->sizeThatFits({contentWidth, available}).height();
    const double x = (size.width() - contentWidth) / 2;
    const double y = (available - (labelHeight + buttonSpacing + buttonHeight)) / 2;
    _view->label->setFrame({x, y, contentWidth, labelHeight});
    _view->button->setFrame({x, y + labelHeight + buttonSpacing, contentWidth, buttonHeight});
    _view->loadingSpinner->setCenter(_view->button->center());
}

void QXSDKKovalinNoPermissionView::_didTapButton()
{
    QXSDKLoginClient::shared()->loginFromViewController(topViewController(), {});
}

void QXSDKKovalinNoPermissionView::_loginDidStart()
{
    showLogin(true);
}

void QXSDKKovalinNoPermissionView::qxsdkLoginLinkDidFail()
{
    showLogin(false);
}

void QXSDKKovalinNoPermissionView::showLogin(bool isUnderWay)
{
    assertOnMainThread();
    _view->button->setEnabled(!isUnderWay);
    _view->loadingSpinner->setHidden(!isUnderWay);
    if (isUnderWay) {
        _view->loadingSpinner->startAnimating();
    } else {
        _view->loadingSpinner->stopAnimating();
    }
}
