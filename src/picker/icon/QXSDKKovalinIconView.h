#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "kits/login/QXSDKLoginStatusObserver.h"
#include "platform/ui/View.h"
#include "search/KovalinSticker.h"

#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtGui/QImage>

#include <functional>
#include <memory>
#include <optional>

class QXSDKKovalinCache;
class QXSDKKovalinFriendState;

/// A small picture to stand beside a host's text field: the user's own avatar; a default picture while no account is
/// linked or where there is no avatar; or the sticker that the host's text matches. Thread and lifetime as of `View`;
/// when it goes while something is under way, nothing comes of that.
///
/// The avatar is asked for whenever an account may have come or changed: when the view is made, by a login, and when
/// the application comes to the front. Its answer takes the place of a sticker on show.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinIconView final : public kovalin::platform::View,
                                                          public QXSDKLoginStatusObserver {
    Q_OBJECT

public:
    /// Told of logins and of the application from here on. Pictures come from the library's store.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinIconView> create();
    /// The same over another store, which isn't null.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinIconView> create(const std::shared_ptr<QXSDKKovalinCache>& cache);
    ~QXSDKKovalinIconView() override;

    /// Whether an account is linked, as far as the view was told.
    [[nodiscard]] bool linked() const;
    /// Asks for the avatar, or shows the default picture; also if nothing has changed.
    void setLinked(bool linked);

    /// What is shown in place of an avatar; the picker's own picture at first, drawn for the view's size.
    [[nodiscard]] QImage defaultImage() const;
    /// From the next time on that the default picture takes the place of another. Null shows nothing.
    void setDefaultImage(const QImage& image);

    /// The sticker of the last update; null for none. A sticker that is set here is only taken for the one on show.
    [[nodiscard]] const KovalinStickerPtr& sticker() const;
    void setSticker(const KovalinStickerPtr& sticker);

    /// Shows the sticker, drawn with the friend's avatar if it takes one; for null the user's avatar again. What is
    /// shown stays until the picture is there, and if it can't be had. The completion, which must not be empty, is
    /// called once, before this returns: true if the sticker is another object than the last one.
    void updateWithKovalinSticker(const KovalinStickerPtr& sticker, const QXSDKKovalinFriendState& friendState,
                                  const std::function<void(bool isChanged)>& completion);

    // From the login.

    void qxsdkLoginLinkDidSucceed() override;
    void qxsdkLoginDidUnlink() override;

    // From the application.

    void applicationDidBecomeActive();

    void layoutSubviews() override;

protected:
    void didMoveToWindow() override;
    void devicePixelRatioDidChange() override;

private:
    struct State;
    /// An address that is known by its pointer; null for none.
    using Address = std::shared_ptr<const QUrl>;

    explicit QXSDKKovalinIconView(const std::shared_ptr<QXSDKKovalinCache>& cache);

    void _updateImageView();
    void _fetchLatestAvatar();
    void avatarDidArrive(const std::optional<QString>& avatarURL);
    void _setImageUrl(const Address& url);
    void fetchDidEnd(const Address& url, const QImage& image);
    void showDefaultImage();
    void drawDefaultImage();

    const std::unique_ptr<State> _icon;
};
