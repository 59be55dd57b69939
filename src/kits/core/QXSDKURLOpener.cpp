#include "kits/core/QXSDKURLOpener.h"

#include "platform/foundation/SharedSlot.h"

#include <QtCore/QStringList>
#include <QtGui/QDesktopServices>

#include <utility>

namespace {

/// What each system has a program for. Qt can't be asked for others.
bool isOpenedEverywhere(const QString& scheme)
{
    static const QStringList schemes = {QStringLiteral("http"), QStringLiteral("https"), QStringLiteral("mailto"),
                                        QStringLiteral("file")};
    return schemes.contains(scheme);
}

class SystemURLOpener final : public QXSDKURLOpener {
public:
    [[nodiscard]] bool canOpenURL(const QUrl& url) override
    {
        return url.isValid() && isOpenedEverywhere(url.scheme());
    }
    void openURL(const QUrl& url, Completion completion) override
    {
        const bool isOpened = url.isValid() && QDesktopServices::openUrl(url);
        if (completion) {
            completion(isOpened);
        }
    }
};

struct Installed {
    kovalin::platform::SharedSlot<QXSDKURLOpener> opener;
    const std::shared_ptr<QXSDKURLOpener> system = std::make_shared<SystemURLOpener>();
};

Installed& installed()
{
    // Never destroyed: threads may still ask while the process ends.
    static auto& state = *new Installed;
    return state;
}

} // namespace

QXSDKURLOpener::~QXSDKURLOpener() = default;

std::shared_ptr<QXSDKURLOpener> QXSDKURLOpener::shared()
{
    auto opener = installed().opener.load();
    return opener ? opener : installed().system;
}

void QXSDKURLOpener::setShared(std::shared_ptr<QXSDKURLOpener> opener)
{
    static_cast<void>(installed().opener.exchange(std::move(opener)));
}
