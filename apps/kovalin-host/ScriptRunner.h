#pragma once

#include "kovalin-host/HostKits.h"
#include "kovalin-host/HostOptions.h"
#include "kovalin-host/HostRecord.h"
#include "kovalin-host/HostWindow.h"
#include "kovalin-host/Script.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace kovalin::host {

/// Carries out a script, as docs/host-script.md tells, in the time that it takes: what it waits for comes through the event loop,
/// which it runs itself. Main thread.
class ScriptRunner final {
public:
    /// Reads the script; throws cli::BadInput where it can't be read.
    ScriptRunner(const HostOptions& options, const HostKits& kits, std::shared_ptr<HostRecord> record);
    ~ScriptRunner();
    Q_DISABLE_COPY_MOVE(ScriptRunner)

    /// Throws cli::BadInput at the first step that can't be done, and leaves "failed.png" and "failed.json".
    void run(bool isPrinting);

private:
    class ShiftedClock;
    using Milliseconds = std::chrono::milliseconds;
    using Arguments = const QStringList&;
    using Handler = std::function<void(ScriptRunner&, Arguments)>;

    using Handlers = QHash<QString, Handler>;

    [[nodiscard]] static const Handlers& handlers();
    static void addWaitingHandlers(Handlers& handlers);
    static void addUserHandlers(Handlers& handlers);
    static void addHostHandlers(Handlers& handlers);
    static void addFileHandlers(Handlers& handlers);
    void carryOut(const ScriptStep& step);
    void leaveFailure();

    // Commands; what goes wrong is thrown as a QString.
    void waitFor(Arguments arguments, bool isWanted);
    void settle(Arguments arguments);
    void tap(const QString& target);
    void scroll(int points);
    void logIn();
    void logOut();
    void moveClock(int seconds);
    void resize(const QSize& size);
    void choosePicker(int number);
    void setAnswer(const QString& rule);
    void screenshot(const QString& name);
    void writeTree(const QString& name);
    void writeEvents(const QString& name);

    /// Makes the window, if there is none yet.
    [[nodiscard]] HostWindow& window();
    [[nodiscard]] ChatHost& chat() { return window().chat(); }
    [[nodiscard]] QQuickWindow& keyWindow();
    [[nodiscard]] EmbeddedItem& place() { return *chat().placeOfPicker(_picker); }
    [[nodiscard]] QXSDKKovalinStickerPickerViewController& picker() { return chat().picker(_picker); }
    [[nodiscard]] ItemRoots roots() { return window().roots(_picker); }
    void waitUntil(const std::function<bool()>& condition, const QString& milliseconds, const QString& what);
    void write(const QString& file, const QJsonDocument& json) const;

    const HostOptions _options;
    const HostKits& _kits;
    const std::shared_ptr<HostRecord> _record;
    const std::vector<ScriptStep> _steps;
    std::shared_ptr<ShiftedClock> _clock; // null before it is moved
    int _picker = 0;                      // whom commands for a picker mean
    std::unique_ptr<HostWindow> _window;  // null before the first command that needs it
};

} // namespace kovalin::host
