#pragma once

#include "kovalin-host/ChatHost.h"
#include "kovalin-host/HostOptions.h"
#include "kovalin-host/ItemTree.h"

#include <QtQuick/QQuickView>
#include <QtQuick/QQuickWindow>

#include <memory>

namespace kovalin::host {

class HostRecord;

/// The window with the chat, and another one that a picker can be moved to. Main thread; the kits are set up by now.
class HostWindow final {
public:
    /// Shows it. Throws cli::BadInput where a part of Qt Quick is missing.
    HostWindow(const HostOptions& options, const std::shared_ptr<HostRecord>& record);
    ~HostWindow();
    Q_DISABLE_COPY_MOVE(HostWindow)

    [[nodiscard]] ChatHost& chat() { return *_chat; }
    [[nodiscard]] QQuickWindow& chatWindow() { return *_view; }
    /// The one that the picker is in.
    [[nodiscard]] QQuickWindow& windowOfPicker(int picker);
    /// Into another window, which is made when it is needed, or back.
    void movePicker(int picker, bool isToOther);

    /// That picker first, then the others, then the windows.
    [[nodiscard]] ItemRoots roots(int picker) const;

private:
    std::unique_ptr<ChatHost> _chat;
    std::unique_ptr<QQuickView> _view;
    std::unique_ptr<QQuickWindow> _other; // null before it is needed
};

} // namespace kovalin::host
