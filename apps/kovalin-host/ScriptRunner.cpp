#include "kovalin-host/ScriptRunner.h"

#include "kits/login/QXSDKLoginClient.h"
#include "kovalin-host/RunUntil.h"
#include "kovalin-host/UserInput.h"
#include "picker/controller/QXSDKKovalinStickerPickerViewController.h"
#include "platform/foundation/Clock.h"
#include "platform/ui/Animation.h"
#include "shared/BadInput.h"
#include "shared/StandardStreams.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QSaveFile>
#include <QtGui/QGuiApplication>

#include <atomic>
#include <utility>

using namespace kovalin::platform;

namespace kovalin::host {

namespace {

constexpr auto longestWait = std::chrono::seconds(30); // where a step doesn't say; against a hang alone
/// What follows from a step begins within this time.
constexpr auto restTime = std::chrono::milliseconds(100);
/// The same, and pictures dissolve, which nobody sees from outside.
constexpr auto restTimeWithMotion = std::chrono::milliseconds(400);

QByteArray readFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw cli::BadInput(path.toStdString() + ": " + file.errorString().toStdString());
    }
    return file.readAll();
}

/// Counts how often the account was unlinked.
class UnlinkCounter final : public QXSDKLoginStatusObserver {
public:
    void qxsdkLoginDidUnlink() override { ++count; }
    int count = 0;
};

} // namespace

/// The system's clock, and some seconds more. Any thread.
class ScriptRunner::ShiftedClock final : public Clock {
public:
    [[nodiscard]] std::chrono::microseconds timeSinceEpoch() const override
    {
        return std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now().time_since_epoch()) +
               std::chrono::seconds(_seconds.load());
    }
    void move(int seconds) { _seconds += seconds; }

private:
    std::atomic<int> _seconds = 0;
};

ScriptRunner::ScriptRunner(const HostOptions& options, const HostKits& kits, std::shared_ptr<HostRecord> record)
    : _options(options)
    , _kits(kits)
    , _record(std::move(record))
    , _steps(readScript(readFile(options.scriptFile), options.scriptFile))
{
}

ScriptRunner::~ScriptRunner()
{
    _window.reset();
    runDueEvents();
    if (_clock) {
        setClock(nullptr);
    }
}

void ScriptRunner::run(bool isPrinting)
{
    for (const ScriptStep& step : _steps) {
        if (isPrinting) {
            const QString line = (QStringList(step.command) + step.arguments).join(u' ').trimmed();
            cli::writeOutput(QByteArray::fromStdString(cli::onOneLine(line.toStdString()) + '\n'));
            cli::flushOutput();
        }
        try {
            runDueEvents();
            carryOut(step);
        } catch (const QString& fault) {
            leaveFailure();
            throw cli::BadInput(
                scriptFault(_options.scriptFile, step.line, step.command + QStringLiteral(": ") + fault));
        }
    }
}

void ScriptRunner::carryOut(const ScriptStep& step)
{
    handlers().value(step.command)(*this, step.arguments);
}

void ScriptRunner::leaveFailure()
{
    if (!_window) {
        return;
    }
    try {
        screenshot(QStringLiteral("failed"));
        writeTree(QStringLiteral("failed"));
    } catch (const QString&) {
        // There is a fault to tell already.
    }
}

// Waiting

void ScriptRunner::waitUntil(const std::function<bool()>& condition, const QString& milliseconds, const QString& what)
{
    static_cast<void>(window()); // nothing comes without it
    const Milliseconds limit = milliseconds.isEmpty() ? longestWait : Milliseconds(milliseconds.toInt());
    if (!runUntil(condition, limit)) {
        throw QStringLiteral("%1 within %2 ms").arg(what).arg(limit.count());
    }
}

void ScriptRunner::waitFor(Arguments arguments, bool isWanted)
{
    const ItemTarget target = ItemTarget::fromText(arguments[0]);
    waitUntil(
        [&] { return (findItem(roots(), target) != nullptr) == isWanted; }, arguments[1],
        (isWanted ? QStringLiteral("no %1 on screen") : QStringLiteral("%1 is still on screen")).arg(arguments[0]));
}

void ScriptRunner::settle(Arguments arguments)
{
    const std::chrono::nanoseconds time = isMotionReduced() ? restTime : restTimeWithMotion;
    QDeadlineTimer rested(time, Qt::PreciseTimer);
    const auto isSettled = [&] {
        if (!isAtRest(roots())) {
            rested.setPreciseRemainingTime(0, time.count());
        }
        return rested.hasExpired();
    };
    waitUntil(isSettled, arguments[0], QStringLiteral("something still moves or loads"));
}

// The user

QQuickWindow& ScriptRunner::keyWindow()
{
    auto* const focused = qobject_cast<QQuickWindow*>(QGuiApplication::focusWindow());
    return focused ? *focused : window().chatWindow();
}

void ScriptRunner::tap(const QString& text)
{
    const ItemTarget target = ItemTarget::fromText(text);
    QQuickItem* item = nullptr;
    waitUntil([&] { return (item = findItem(roots(), target)) != nullptr; }, {},
              QStringLiteral("no %1 on screen").arg(text));
    clickAt(*item->window(), visibleArea(*item).center());
}

void ScriptRunner::scroll(int points)
{
    const QRectF area = visibleArea(*picker().view());
    if (area.isEmpty()) {
        throw QStringLiteral("the picker isn't on screen");
    }
    scrollAt(window().windowOfPicker(_picker), area.center(), points);
}

// The host

HostWindow& ScriptRunner::window()
{
    if (!_window) {
        _kits.refreshConfigs();
        _window = std::make_unique<HostWindow>(_options, _record);
        const QQuickWindow& shown = _window->chatWindow();
        if (!runUntil([&shown] { return shown.isExposed() && shown.isActive(); }, longestWait)) {
            throw QStringLiteral("the window doesn't come up");
        }
    }
    return *_window;
}

void ScriptRunner::logIn()
{
    static_cast<void>(window());
    const auto isOver = std::make_shared<bool>(false);
    QXSDKLoginClient::shared()->loginFromViewController(nullptr, [isOver](const auto&) { *isOver = true; });
    waitUntil([&] { return *isOver; }, {}, QStringLiteral("no end of the login"));
}

void ScriptRunner::logOut()
{
    static_cast<void>(window());
    const auto login = QXSDKLoginClient::shared();
    const bool isLoggedIn = login->isUserLoggedIn();
    const auto counter = std::make_shared<UnlinkCounter>();
    QXSDKLoginClient::addLoginStatusObserver(counter);
    login->unlink();
    if (isLoggedIn) {
        waitUntil([&] { return counter->count > 0; }, {}, QStringLiteral("nobody was told"));
    }
}

void ScriptRunner::moveClock(int seconds)
{
    if (!_clock) {
        _clock = std::make_shared<ShiftedClock>();
        static_cast<void>(platform::setClock(_clock));
    }
    _clock->move(seconds);
}

void ScriptRunner::resize(const QSize& size)
{
    QQuickWindow& resized = window().chatWindow();
    resized.resize(size);
    // A window manager may have it otherwise; then it stays as it is.
    static_cast<void>(runUntil([&] { return resized.contentItem()->size() == QSizeF(size); }, std::chrono::seconds(1)));
}

void ScriptRunner::choosePicker(int number)
{
    if (number > chat().pickerCount()) {
        throw QStringLiteral("there is no picker %1").arg(number);
    }
    _picker = number - 1;
}

void ScriptRunner::setAnswer(const QString& rule)
{
    struct Answer {
        std::atomic<bool> isThere = false;
        QString fault; // before `isThere`
    };
    const auto answer = std::make_shared<Answer>();
    _kits.setAnswer(rule.toUtf8(), [answer](const QString& fault) {
        answer->fault = fault;
        answer->isThere = true;
    });
    if (!runUntil([&] { return answer->isThere.load(); }, longestWait)) {
        throw QStringLiteral("the server doesn't answer");
    }
    if (!answer->fault.isEmpty()) {
        throw QString(answer->fault);
    }
}

// Files

void ScriptRunner::write(const QString& file, const QJsonDocument& json) const
{
    QSaveFile out(_options.outFolder + u'/' + file);
    if (!out.open(QIODevice::WriteOnly) || out.write(json.toJson()) < 0 || !out.commit()) {
        throw QString(out.fileName() + QStringLiteral(": ") + out.errorString());
    }
}

void ScriptRunner::screenshot(const QString& name)
{
    const QString file = _options.outFolder + u'/' + name + QStringLiteral(".png");
    if (!window().windowOfPicker(_picker).grabWindow().save(file)) {
        throw QString(file + QStringLiteral(": can't be written"));
    }
}

void ScriptRunner::writeTree(const QString& name)
{
    const ItemRoots trees = roots();
    QJsonObject tree = treeOf(*trees.first(), trees);
    QJsonArray others;
    for (const QQuickItem* const root : trees.sliced(1)) {
        others.append(treeOf(*root, trees));
    }
    tree.insert(QStringLiteral("others"), others);
    write(name + QStringLiteral(".json"), QJsonDocument(tree));
}

void ScriptRunner::writeEvents(const QString& name)
{
    write(name + QStringLiteral(".json"), QJsonDocument(_record->take()));
}

} // namespace kovalin::host
