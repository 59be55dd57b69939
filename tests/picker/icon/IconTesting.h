#pragma once

#include "picker/grid/LoopbackPictures.h"
#include "picker/icon/QXSDKKovalinIconView.h"
#include "platform/ui/ImageView.h"
#include "support/ScriptedLoginClient.h"
#include "support/WaitFor.h"

#include <QtCore/QJsonObject>

#include <cstddef>
#include <memory>
#include <optional>

namespace kovalin::test {

/// Answers a request for the user's avatar with its address, or with none, and lets the icon hear of it.
inline void answerAvatar(ScriptedLoginClient& login, std::size_t request, const std::optional<QUrl>& url)
{
    QJsonObject kovalin;
    if (url) {
        kovalin.insert(QStringLiteral("avatar"), url->toString());
    }
    const QJsonObject me{{QStringLiteral("kovalin"), kovalin}};
    login.request(request).success({{QStringLiteral("data"), QJsonObject{{QStringLiteral("me"), me}}}});
    // The client hands its answers over in two turns.
    drainMainQueue();
    drainMainQueue();
}

[[nodiscard]] inline std::shared_ptr<platform::ImageView> imageViewOf(const QXSDKKovalinIconView& icon)
{
    return std::static_pointer_cast<platform::ImageView>(icon.subviews().at(0));
}

} // namespace kovalin::test
