#pragma once

#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "platform/ui/View.h"

#include <QtCore/QRectF>
#include <QtCore/QString>

#include <memory>

class KovalinSearchBarView;

/// Told what the user does with a search bar. Called on the main thread; may do anything, such as letting go of the
/// bar.
class KovalinSearchBarViewDelegate {
public:
    KovalinSearchBarViewDelegate() = default;
    virtual ~KovalinSearchBarViewDelegate();
    Q_DISABLE_COPY_MOVE(KovalinSearchBarViewDelegate)

    /// By each edit, and by clearing.
    virtual void searchBarViewDidChangeSearchText(KovalinSearchBarView& searchBar, const QString& text) = 0;
    virtual void searchBarViewDidBecomeFirstResponder(KovalinSearchBarView& searchBar) = 0;
    virtual void searchBarViewDidResignFirstResponder(KovalinSearchBarView& searchBar) = 0;
};

/// The text field at the top of a picker, with a button that leads back, which slides in while there is something to go
/// back from, and one that clears. Thread and lifetime as of `View`.
class KovalinSearchBarView final : public kovalin::platform::View {
    Q_OBJECT

public:
    /// Takes the colours of the configuration's theme, or of the default one if that is null.
    KovalinSearchBarView(const QRectF& frame, const QXSDKKovalinStickerPickerConfigPtr& config);
    ~KovalinSearchBarView() override;

    /// Held weakly.
    void setDelegate(const std::weak_ptr<KovalinSearchBarViewDelegate>& delegate);

    /// What the user sees in the field; what an input method composes is in it.
    [[nodiscard]] QString text() const;
    /// The delegate isn't told, and the focus stays where it is.
    void setText(const QString& text);

    /// Whether the text field has the focus.
    [[nodiscard]] bool isFirstResponder() const;
    /// Takes the focus from the text field if it is there.
    void endEditing();
    /// For a key that was pressed elsewhere in the picker and that nobody there wants: the field takes a printed
    /// character, and the focus, as the user's edit. False, and nothing done, if the key isn't for it.
    bool acceptKeyPress(const QKeyEvent& event);

    void layoutSubviews() override;

protected:
    void didMoveToWindow() override;
    void devicePixelRatioDidChange() override;

private:
    struct State;

    void _setUpSearchField();
    void _setUpButtons();
    void _drawPictures();

    void _searchFieldDidBeginEditing();
    void _searchFieldDidEndEditing();
    void searchFieldEdited();
    void _updateClearButtonVisibility();
    void _clear();
    void _backButtonPressed();
    void _clearButtonPressed();
    void _setIsBackButtonVisible(bool isVisible);
    void _backButtonDidSlide();

    const std::unique_ptr<State> _bar;
};
