#pragma once

#include "picker/content/QXSDKKovalinSearchMode.h"
#include "platform/foundation/WeakSet.h"
#include "qml/KovalinTheme.h"

#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtGui/QImage>
#include <QtQuick/QQuickItem>

#include <QtQml/qqmlregistration.h>

#include <memory>

class QXSDKKovalinIconView;
class QXSDKKovalinStickerPickerConfig;
class QXSDKKovalinStickerPickerViewController;

/// A picker or an icon lies below the children that a host gives to its item.
inline constexpr double belowTheHostsChildren = -1;

/// A sticker picker that fills its item, for QML. It appears and disappears by itself: it is on screen while it is visible and in a
/// window that is shown.
///
/// The picker is made in the first turn of the event loop after the item is complete, whether it can be seen or not, so that
/// `Component.onCompleted` may still set up `KovalinClient`. A change of `theme`, of one of its colours, of `showSearchBar` or of
/// `showSearchPills` makes a new picker in a later turn, without what its user had typed into the old one.
///
/// Main thread only. The item may go at any time, also in one of its own signals by `destroy()` and with its engine.
class KovalinStickerPicker : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// The user whom the host's user writes to; empty for none.
    Q_PROPERTY(QString friendUserId MEMBER _friendUserId NOTIFY friendUserIdChanged)
    /// The host's text, as while its user types; empty for none.
    Q_PROPERTY(QString searchTerm MEMBER _searchTerm NOTIFY searchTermChanged)
    Q_PROPERTY(SearchMode searchMode MEMBER _searchMode NOTIFY searchModeChanged)
    Q_PROPERTY(bool showSearchBar MEMBER _showSearchBar NOTIFY showSearchBarChanged)
    Q_PROPERTY(bool showSearchPills MEMBER _showSearchPills NOTIFY showSearchPillsChanged)
    /// Null for the default colours.
    Q_PROPERTY(KovalinTheme* theme READ theme WRITE setTheme NOTIFY themeChanged)

    // What of the item the device's edges and bars cover, in points.

    Q_PROPERTY(qreal safeAreaLeft MEMBER _safeAreaLeft NOTIFY safeAreaChanged)
    Q_PROPERTY(qreal safeAreaTop MEMBER _safeAreaTop NOTIFY safeAreaChanged)
    Q_PROPERTY(qreal safeAreaRight MEMBER _safeAreaRight NOTIFY safeAreaChanged)
    Q_PROPERTY(qreal safeAreaBottom MEMBER _safeAreaBottom NOTIFY safeAreaChanged)

public:
    /// What a search by `searchTerm` does with what the picker shows; see `QXSDKKovalinSearchMode`.
    enum SearchMode {
        Replace = QXSDKKovalinSearchModeReplace,
        Blend = QXSDKKovalinSearchModeBlend,
    };
    Q_ENUM(SearchMode)

    explicit KovalinStickerPicker(QQuickItem* parent = nullptr);
    ~KovalinStickerPicker() override;
    Q_DISABLE_COPY_MOVE(KovalinStickerPicker)

    [[nodiscard]] KovalinTheme* theme() const { return _theme; }
    void setTheme(KovalinTheme* theme);

    /// Has the icon shown what `searchTerm` matches, also by pickers that are made later. Held weakly; nothing for null.
    void attachIcon(const std::shared_ptr<QXSDKKovalinIconView>& icon);
    void removeIcon(const std::shared_ptr<QXSDKKovalinIconView>& icon);

Q_SIGNALS:
    /// A sticker was chosen: the address of its picture, empty for one without an address, and the picture as it is on screen.
    void stickerSelected(const QString& url, const QImage& image);
    /// A tag was tapped.
    void searchTagSelected();
    void searchFieldFocusChanged(bool hasFocus);

    void friendUserIdChanged();
    void searchTermChanged();
    void searchModeChanged();
    void showSearchBarChanged();
    void showSearchPillsChanged();
    void themeChanged();
    void safeAreaChanged();

protected:
    void componentComplete() override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    class Delegate;

    void makeLater();
    void make();
    void end();
    [[nodiscard]] std::shared_ptr<QXSDKKovalinStickerPickerConfig> config() const;
    void watchWindow(QQuickWindow* window);
    void updateAppearanceLater();
    void updateAppearance();
    void setFriend();
    void search();
    void setSafeArea();

    QString _friendUserId;
    QString _searchTerm;
    SearchMode _searchMode = Replace;
    bool _showSearchBar = true;
    bool _showSearchPills = true;
    QPointer<KovalinTheme> _theme;
    qreal _safeAreaLeft = 0;
    qreal _safeAreaTop = 0;
    qreal _safeAreaRight = 0;
    qreal _safeAreaBottom = 0;

    kovalin::platform::WeakSet<QXSDKKovalinIconView> _icons;
    QPointer<QQuickWindow> _watchedWindow;
    /// Null before the first picker is made.
    std::shared_ptr<QXSDKKovalinStickerPickerViewController> _controller;
    std::shared_ptr<Delegate> _delegate;
    bool _isMakingDue = false;
    bool _isAppearanceDue = false;
    bool _hasAppeared = false;
};
