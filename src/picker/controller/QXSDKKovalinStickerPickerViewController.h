#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/content/QXSDKKovalinSearchMode.h"
#include "picker/controller/QXSDKKovalinStickerPickerViewControllerDelegate.h"

#include <QtCore/QMarginsF>
#include <QtCore/QString>
#include <QtCore/QtGlobal>

#include <memory>
#include <optional>

QT_FORWARD_DECLARE_CLASS(QQuickItem)
class QXSDKKovalinIconView;
struct PickerObjects;

/// A sticker picker, for a host to embed: it makes all that belongs to it, and tells what the user chooses.
///
/// Main thread only: other calls are a clean stop.
///
/// Lifetime: held by the host. The view goes with it, and a session that is under way then ends. A scene that the view lies in
/// may go first.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinStickerPickerViewController final {
public:
    /// With the default configuration for null. Nothing is loaded before `view()` is asked for.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinStickerPickerViewController>
    create(const QXSDKKovalinStickerPickerConfigPtr& config = nullptr);
    ~QXSDKKovalinStickerPickerViewController();
    Q_DISABLE_COPY_MOVE(QXSDKKovalinStickerPickerViewController)

    /// Held weakly.
    void setDelegate(const std::weak_ptr<QXSDKKovalinStickerPickerViewControllerDelegate>& delegate);

    // Commands

    /// The user whom the host's user writes to: two-person stickers show their avatar. Absent or empty for none.
    void setFriendUserId(const std::optional<QString>& friendUserId);
    /// Searches for the host's text, as while its user types; absent or empty ends that.
    void setSearchTerm(const std::optional<QString>& searchTerm, QXSDKKovalinSearchMode searchMode);
    /// From here on searches by `setSearchTerm` update the icon's sticker. Held weakly.
    void attachKovalinIcon(const std::shared_ptr<QXSDKKovalinIconView>& icon);
    void removeKovalinIcon(const std::shared_ptr<QXSDKKovalinIconView>& icon);

    // The view

    /// The picker as an item for any Qt Quick scene: the host gives it a parent item (`setParentItem`) and a size. Made, and
    /// loading, from the first call on; never null, and the same for the controller's life, whose it is: the host must neither
    /// delete it nor give it a QObject parent. It leaves its parent item when the controller goes, and the other way round.
    ///
    /// What of it lies outside of an item that it lies in counts as not visible, whether or not that item clips: each of them
    /// needs a size.
    [[nodiscard]] QQuickItem* view();

    /// The host says that the view comes on screen, or leaves it: a session of use goes on only between the two. It may say so
    /// before the view has a window.
    void viewWillAppear();
    void viewWillDisappear();

    /// What of the view the device's edges and bars cover, in points; nothing at first.
    void setSafeAreaInsets(const QMarginsF& insets);

private:
    class Impl;
    friend struct PickerObjects;

    explicit QXSDKKovalinStickerPickerViewController(const PickerObjects& objects);

    const std::shared_ptr<Impl> _impl;
};
