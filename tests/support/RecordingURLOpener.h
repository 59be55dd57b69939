#pragma once

#include "kits/core/QXSDKURLOpener.h"

#include <QtCore/QStringList>
#include <QtCore/QUrl>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kovalin::test {

/// Opens nothing, and notes what it was to open. Main thread only.
class RecordingURLOpener final : public QXSDKURLOpener {
public:
    [[nodiscard]] bool canOpenURL(const QUrl& url) override { return openableSchemes.contains(url.scheme()); }
    void openURL(const QUrl& url, Completion completion) override
    {
        told.push_back("open " + url.toString().toStdString() + (completion ? " with completion" : ""));
    }

    QStringList openableSchemes;
    /// What happened, in order; a test may add to it.
    std::vector<std::string> told;
};

/// The process's opener for as long as this lives, and the system's after it.
class InstalledURLOpener final {
public:
    InstalledURLOpener() { QXSDKURLOpener::setShared(_opener); }
    ~InstalledURLOpener() { QXSDKURLOpener::setShared(nullptr); }
    InstalledURLOpener(const InstalledURLOpener&) = delete;
    InstalledURLOpener& operator=(const InstalledURLOpener&) = delete;

    [[nodiscard]] RecordingURLOpener* operator->() const { return _opener.get(); }

private:
    std::shared_ptr<RecordingURLOpener> _opener = std::make_shared<RecordingURLOpener>();
};

} // namespace kovalin::test
