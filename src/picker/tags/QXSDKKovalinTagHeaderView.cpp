#include "picker/tags/QXSDKKovalinTagHeaderView.h"

#include "kits/core/QXSDKLayoutDirection.h"
#include "picker/tags/QXSDKKovalinTagView.h"
#include "picker/views/DrawnPictures.h"
#include "picker/views/KeyName.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/Button.h"
#include "platform/ui/ImageView.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QStyleHints>

#include <utility>

using namespace kovalin::platform;

namespace {

// Points.
constexpr QRectF iconFrame(20, 0, 40, 40);
constexpr double iconTrailing = 60;      // of its left edge from the right one, where it is mirrored
constexpr double backButtonInset = 15;   // of its centre
constexpr double cancelButtonInset = 20; // of its centre
constexpr double pillInset = 55;
constexpr double pillTop = 8;
constexpr double borderHeight = 0.5;

constexpr double cancelButtonAlpha = 0.62F;

} // namespace

struct QXSDKKovalinTagHeaderView::State {
    QXSDKKovalinStickerPickerThemePtr theme;

    const std::shared_ptr<View> bottomBorder = makeView<View>();
    const std::shared_ptr<ImageView> searchIcon = makeView<ImageView>();
    const std::shared_ptr<QXSDKKovalinTagView> tagView = makeView<QXSDKKovalinTagView>();
    const std::shared_ptr<Button> backButton = makeView<Button>();
    const std::shared_ptr<Button> cancelButton = makeView<Button>();

    std::function<void()> onTap;
    /// A press may still become a tap.
    bool isTapping = false;
    QPointF pressedAt;
    /// That the pictures are drawn for; 0 before they are.
    double pictureRatio = 0;
};

QXSDKKovalinTagHeaderView::QXSDKKovalinTagHeaderView(const QXSDKTagTilePtr& tagTile,
                                                     const QXSDKKovalinStickerPickerConfigPtr& config)
    : _header(std::make_unique<State>())
{
    _header->theme = config ? config->theme() : std::make_shared<QXSDKKovalinStickerPickerTheme>();
    setBackgroundColor(_header->theme->backgroundColor());
    setAcceptedMouseButtons(Qt::LeftButton);

    _header->searchIcon->setFrame(iconFrame);
    _header->searchIcon->setContentMode(ContentMode::Center);
    addSubview(_header->searchIcon);

    _setUpButtons();

    QXSDKKovalinTagView& pill = *_header->tagView;
    pill.setBackgroundColor(tagTile->color());
    pill.setText(tagTile->text());
    pill.applyTheme(*_header->theme);
    addSubview(_header->tagView);

    _header->bottomBorder->setBackgroundColor(_header->theme->borderColor());
    addSubview(_header->bottomBorder);
    _drawPictures();
}

QXSDKKovalinTagHeaderView::~QXSDKKovalinTagHeaderView() = default;

void QXSDKKovalinTagHeaderView::_setUpButtons()
{
    Button& back = *_header->backButton;
    back.setAccessibilityLabel(nameOfKey(Qt::Key_Back));
    if (isRTL()) {
        back.setTransform(ViewTransform::scale(-1, 1));
    }
    addSubview(_header->backButton);

    Button& cancel = *_header->cancelButton;
    cancel.setAccessibilityLabel(nameOfKey(Qt::Key_Cancel));
    cancel.setAlpha(cancelButtonAlpha);
    addSubview(_header->cancelButton);
}

const std::shared_ptr<Button>& QXSDKKovalinTagHeaderView::backButton() const
{
    return _header->backButton;
}

const std::shared_ptr<Button>& QXSDKKovalinTagHeaderView::cancelButton() const
{
    return _header->cancelButton;
}

void QXSDKKovalinTagHeaderView::setOnTap(std::function<void()> handler)
{
    assertOnMainThread();
    _header->onTap = std::move(handler);
}

// What is shown

void QXSDKKovalinTagHeaderView::_drawPictures()
{
    const double ratio = devicePixelRatio();
    if (std::exchange(_header->pictureRatio, ratio) == ratio) {
        return;
    }
    const QXSDKKovalinStickerPickerTheme& theme = *_header->theme;
    _header->searchIcon->setImage(drawnTemplatePicture(QStringLiteral("search"), ratio, theme.searchColor()));
    _header->backButton->setImage(drawnTemplatePicture(QStringLiteral("search-back"), ratio, theme.navIconColor()));
    _header->cancelButton->setImage(drawnTemplatePicture(QStringLiteral("search-clear"), ratio, theme.navIconColor()));
}

void QXSDKKovalinTagHeaderView::didMoveToWindow()
{
    if (window()) {
        _drawPictures();
    }
}

void QXSDKKovalinTagHeaderView::devicePixelRatioDidChange()
{
    _drawPictures();
}

void QXSDKKovalinTagHeaderView::layoutSubviews()
{
    const double width = bounds().width();
    const bool isMirrored = isRTL();
    const QSizeF pill = QXSDKKovalinTagView::sizeForText(_header->tagView->text());

    _header->backButton->sizeToFit();
    _header->cancelButton->sizeToFit();
    _header->backButton->setCenter({isMirrored ? width - backButtonInset : backButtonInset, center().y()});
    _header->cancelButton->setCenter({isMirrored ? cancelButtonInset : width - cancelButtonInset, center().y()});
    const QPointF icon = isMirrored ? QPointF(width - iconTrailing, 0) : iconFrame.topLeft();
    _header->searchIcon->setFrame({icon, iconFrame.size()});
    _header->tagView->setFrame({{isMirrored ? width - pillInset - pill.width() : pillInset, pillTop}, pill});
    _header->bottomBorder->setFrame({0, bounds().bottom() - borderHeight, width, borderHeight});
}

// Taps

void QXSDKKovalinTagHeaderView::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    _header->isTapping = true;
    _header->pressedAt = event->position();
    if (_header->tagView->frame().contains(event->position())) {
        _header->tagView->setIsTouched(true);
    }
}

void QXSDKKovalinTagHeaderView::mouseMoveEvent(QMouseEvent* event)
{
    const QPointF way = event->position() - _header->pressedAt;
    if (way.manhattanLength() > QGuiApplication::styleHints()->startDragDistance()) {
        _header->isTapping = false;
    }
}

void QXSDKKovalinTagHeaderView::mouseReleaseEvent(QMouseEvent* event)
{
    // Who is told of the tap may let the header go, and set another handler.
    const auto self = weak_from_this().lock();
    const bool isTap = std::exchange(_header->isTapping, false) && contains(event->position());
    _header->tagView->setIsTouched(false);
    if (const auto onTap = _header->onTap; isTap && onTap) {
        onTap();
    }
}

void QXSDKKovalinTagHeaderView::mouseUngrabEvent()
{
    // It also comes after each release.
    _header->isTapping = false;
    _header->tagView->setIsTouched(false);
}
