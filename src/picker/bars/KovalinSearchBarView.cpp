#include "picker/bars/KovalinSearchBarView.h"

#include "kits/core/QXSDKFont.h"
#include "kits/core/QXSDKLayoutDirection.h"
#include "picker/config/KovalinString.h"
#include "picker/views/DrawnPictures.h"
#include "picker/views/KeyName.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/Animation.h"
#include "platform/ui/Button.h"
#include "platform/ui/ImageView.h"
#include "platform/ui/TextField.h"

#include <algorithm>
#include <utility>

using namespace kovalin::platform;

namespace {

// Points.
constexpr QRectF iconFrame(0, 0, 40, 40);
constexpr double fontSize = 16;
constexpr double fieldShift = 20;
constexpr double backButtonWidth = 30;
constexpr double clearButtonInset = 20; // of its centre
constexpr double borderHeight = 0.5;
constexpr double clearButtonSpacing = 6; // between it and a long text

constexpr double clearButtonAlpha = 0.62F;
constexpr AnimationSeconds slideDuration(0.2F);

} // namespace

KovalinSearchBarViewDelegate::~KovalinSearchBarViewDelegate() = default;

struct KovalinSearchBarView::State {
    QXSDKKovalinStickerPickerThemePtr theme;

    std::shared_ptr<Button> backButton = makeView<Button>();
    std::shared_ptr<View> bottomBorder = makeView<View>();
    std::shared_ptr<TextField> searchField = makeView<TextField>();
    std::shared_ptr<Button> clearButton = makeView<Button>();
    bool isBackButtonVisible = false;
    std::weak_ptr<KovalinSearchBarViewDelegate> delegate;

    std::shared_ptr<ImageView> searchIcon = makeView<ImageView>();
    /// That the pictures are drawn for; 0 before they are.
    double pictureRatio = 0;
    /// Counts the back button's ways in and out, of which the latest says what becomes of it.
    int slides = 0;
};

KovalinSearchBarView::KovalinSearchBarView(const QRectF& frame, const QXSDKKovalinStickerPickerConfigPtr& config)
    : _bar(std::make_unique<State>())
{
    _bar->theme = config ? config->theme() : std::make_shared<QXSDKKovalinStickerPickerTheme>();
    setFrame(frame);
    setBackgroundColor(_bar->theme->backgroundColor());
    _setUpSearchField();
    _setUpButtons();
    _bar->bottomBorder->setBackgroundColor(_bar->theme->borderColor());
    addSubview(_bar->bottomBorder);
    _drawPictures();
}

KovalinSearchBarView::~KovalinSearchBarView()
{
    // Somebody else may still hold the parts.
    _bar->searchField->setOnEditingChanged({});
    _bar->searchField->setOnBeginEditing({});
    _bar->searchField->setOnEndEditing({});
    _bar->searchField->setOnReturn({});
    _bar->backButton->setOnTouchUpInside({});
    _bar->clearButton->setOnTouchUpInside({});
}

void KovalinSearchBarView::_setUpSearchField()
{
    TextField& field = *_bar->searchField;
    _bar->searchIcon->setFrame(iconFrame);
    _bar->searchIcon->setContentMode(ContentMode::Center);
    field.setLeftView(_bar->searchIcon);
    field.setAutocorrects(false);
    field.setAutocapitalizes(false);
    field.setReturnKeyType(Qt::EnterKeySearch);
    field.setFont(qxsdkRegularFontOfSize(fontSize));
    field.setTextColor(_bar->theme->titleTextColor());
    field.setTintColor(_bar->theme->searchColor());
    field.setPlaceholder(kovalinStringWithKey(QStringLiteral("search_kovalin")));
    field.setPlaceholderColor(_bar->theme->searchColor());
    field.setAccessibilityIdentifier(QStringLiteral("qxsdk_kovalin_content_search"));
    field.setOnEditingChanged([this] { searchFieldEdited(); });
    field.setOnBeginEditing([this] { _searchFieldDidBeginEditing(); });
    field.setOnEndEditing([this] { _searchFieldDidEndEditing(); });
    field.setOnReturn([this] { endEditing(); });
    addSubview(_bar->searchField);
}

void KovalinSearchBarView::_setUpButtons()
{
    Button& back = *_bar->backButton;
    back.setAccessibilityLabel(nameOfKey(Qt::Key_Back));
    if (isRTL()) {
        back.setTransform(ViewTransform::scale(-1, 1));
    }
    back.setOnTouchUpInside([this] { _backButtonPressed(); });
    // While it is outside neither the keyboard nor an assistive tool finds it.
    back.setHidden(true);
    back.setEnabled(false);
    addSubview(_bar->backButton);

    Button& clear = *_bar->clearButton;
    clear.setHidden(true);
    clear.setAlpha(clearButtonAlpha);
    clear.setAccessibilityLabel(nameOfKey(Qt::Key_Clear));
    clear.setOnTouchUpInside([this] { _clearButtonPressed(); });
    addSubview(_bar->clearButton);
}

void KovalinSearchBarView::_drawPictures()
{
    const double ratio = devicePixelRatio();
    if (std::exchange(_bar->pictureRatio, ratio) == ratio) {
        return;
    }
    const QXSDKKovalinStickerPickerTheme& theme = *_bar->theme;
    _bar->searchIcon->setImage(drawnTemplatePicture(QStringLiteral("search"), ratio, theme.searchColor()));
    _bar->backButton->setImage(drawnTemplatePicture(QStringLiteral("search-back"), ratio, theme.navIconColor()));
    _bar->clearButton->setImage(drawnTemplatePicture(QStringLiteral("search-clear"), ratio, theme.navIconColor()));
}

void KovalinSearchBarView::didMoveToWindow()
{
    if (window()) {
        _drawPictures();
    }
}

void KovalinSearchBarView::devicePixelRatioDidChange()
{
    _drawPictures();
}

void KovalinSearchBarView::layoutSubviews()
{
    const double width = bounds().width();
    const double height = bounds().height();
    const bool isMirrored = isRTL();
    const bool isBackShown = _bar->isBackButtonVisible;

    _bar->clearButton->sizeToFit();
    _bar->clearButton->setCenter({isMirrored ? clearButtonInset : width - clearButtonInset, center().y()});
    const double fieldX = isBackShown != isMirrored ? fieldShift : 0;
    const QRectF field(fieldX, 0, width - fieldShift, height);
    _bar->searchField->setFrame(field);
    const double backX =
        isMirrored ? width - (isBackShown ? backButtonWidth : 0) : (isBackShown ? 0 : -backButtonWidth);
    _bar->backButton->setFrame({backX, 0, backButtonWidth, height});
    _bar->bottomBorder->setFrame({0, height - borderHeight, width, borderHeight});

    // A long text ends before the clear button, which lies on the field.
    const QRectF clear = _bar->clearButton->frame();
    const double covered = isMirrored ? clear.right() - field.left() : field.right() - clear.left();
    const double inset = std::max(covered + clearButtonSpacing, 0.0);
    _bar->searchField->setTextInsets({isMirrored ? inset : 0, 0, isMirrored ? 0 : inset, 0});
}

// Text and focus

void KovalinSearchBarView::setDelegate(const std::weak_ptr<KovalinSearchBarViewDelegate>& delegate)
{
    assertOnMainThread();
    _bar->delegate = delegate;
}

QString KovalinSearchBarView::text() const
{
    return _bar->searchField->text();
}

void KovalinSearchBarView::setText(const QString& text)
{
    _bar->searchField->setText(text);
    _updateClearButtonVisibility();
}

bool KovalinSearchBarView::isFirstResponder() const
{
    return _bar->searchField->isFirstResponder();
}

void KovalinSearchBarView::endEditing()
{
    _bar->searchField->resignFirstResponder();
}

bool KovalinSearchBarView::acceptKeyPress(const QKeyEvent& event)
{
    return _bar->searchField->acceptKeyPress(event);
}

void KovalinSearchBarView::_searchFieldDidBeginEditing()
{
    const auto self = weak_from_this().lock();
    if (const auto delegate = _bar->delegate.lock()) {
        delegate->searchBarViewDidBecomeFirstResponder(*this);
    }
    _setIsBackButtonVisible(true);
}

void KovalinSearchBarView::_searchFieldDidEndEditing()
{
    const auto self = weak_from_this().lock();
    if (const auto delegate = _bar->delegate.lock()) {
        delegate->searchBarViewDidResignFirstResponder(*this);
    }
    _setIsBackButtonVisible(!text().isEmpty());
}

void KovalinSearchBarView::searchFieldEdited()
{
    const auto self = weak_from_this().lock();
    if (const auto delegate = _bar->delegate.lock()) {
        delegate->searchBarViewDidChangeSearchText(*this, text());
    }
    _updateClearButtonVisibility();
}

// Buttons

void KovalinSearchBarView::_updateClearButtonVisibility()
{
    const bool isEmpty = text().isEmpty();
    _bar->clearButton->setHidden(isEmpty);
    _setIsBackButtonVisible(!isEmpty);
}

void KovalinSearchBarView::_clear()
{
    setText({});
    searchFieldEdited();
}

void KovalinSearchBarView::_backButtonPressed()
{
    const auto self = weak_from_this().lock();
    if (!text().isEmpty()) {
        _clear();
    }
    endEditing();
    _setIsBackButtonVisible(false);
}

void KovalinSearchBarView::_clearButtonPressed()
{
    if (isFirstResponder()) {
        _clear();
    } else {
        _backButtonPressed();
    }
}

void KovalinSearchBarView::_setIsBackButtonVisible(bool isVisible)
{
    if (std::exchange(_bar->isBackButtonVisible, isVisible) == isVisible) {
        return;
    }
    _bar->backButton->setHidden(false);
    _bar->backButton->setEnabled(isVisible);
    // What lies beside the bar isn't drawn over on the way.
    setClipsToBounds(true);
    const auto didEnd = [bar = weak_from_this(), slide = ++_bar->slides] {
        const auto held = std::static_pointer_cast<KovalinSearchBarView>(bar.lock());
        if (held && held->_bar->slides == slide) {
            held->_backButtonDidSlide();
        }
    };
    animate(
        slideDuration, AnimationSeconds(0), [this] { layoutSubviews(); }, didEnd);
}

void KovalinSearchBarView::_backButtonDidSlide()
{
    _bar->backButton->setHidden(!_bar->isBackButtonVisible);
    setClipsToBounds(false);
}
