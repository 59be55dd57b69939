// What each command of a script does.

#include "kovalin-host/RunUntil.h"
#include "kovalin-host/ScriptRunner.h"
#include "kovalin-host/UserInput.h"
#include "picker/controller/QXSDKKovalinStickerPickerViewController.h"
#include "platform/foundation/Application.h"

#include <utility>

using kovalin::platform::Application;
using kovalin::platform::ApplicationState;

namespace kovalin::host {

namespace {

using Runner = ScriptRunner;

template <class Handlers>
auto adderTo(Handlers& handlers)
{
    return [&handlers](const char* name, typename Handlers::mapped_type handler) {
        handlers.insert(QString::fromLatin1(name), std::move(handler));
    };
}

} // namespace

const ScriptRunner::Handlers& ScriptRunner::handlers()
{
    static const Handlers all = [] {
        Handlers made;
        addWaitingHandlers(made);
        addUserHandlers(made);
        addHostHandlers(made);
        addFileHandlers(made);
        return made;
    }();
    return all;
}

void ScriptRunner::addWaitingHandlers(Handlers& handlers)
{
    const auto add = adderTo(handlers);
    add("wait", [](Runner& /*runner*/, Arguments arguments) {
        static_cast<void>(runUntil([] { return false; }, Milliseconds(arguments[0].toInt())));
    });
    add("wait-for", [](Runner& runner, Arguments arguments) { runner.waitFor(arguments, true); });
    add("wait-gone", [](Runner& runner, Arguments arguments) { runner.waitFor(arguments, false); });
    add("wait-event", [](Runner& runner, Arguments arguments) {
        runner.waitUntil([&] { return runner._record->has(arguments[0]); }, arguments[1],
                         QStringLiteral("no %1").arg(arguments[0]));
    });
    add("wait-log", [](Runner& runner, Arguments arguments) {
        runner.waitUntil([&] { return runner._record->hasLogged(arguments[0]); }, {},
                         QStringLiteral("no line with \"%1\"").arg(arguments[0]));
    });
    add("settle", [](Runner& runner, Arguments arguments) { runner.settle(arguments); });
}

void ScriptRunner::addUserHandlers(Handlers& handlers)
{
    const auto add = adderTo(handlers);
    add("type", [](Runner& runner, Arguments arguments) { typeInto(runner.keyWindow(), arguments[0]); });
    add("key", [](Runner& runner, Arguments arguments) { pressKey(runner.keyWindow(), arguments[0]); });
    add("tap", [](Runner& runner, Arguments arguments) { runner.tap(arguments[0]); });
    add("tap-at", [](Runner& runner, Arguments arguments) {
        clickAt(runner.window().windowOfPicker(runner._picker), {arguments[0].toDouble(), arguments[1].toDouble()});
    });
    add("scroll", [](Runner& runner, Arguments arguments) { runner.scroll(arguments[0].toInt()); });
}

void ScriptRunner::addHostHandlers(Handlers& handlers)
{
    const auto add = adderTo(handlers);
    add("term", [](Runner& runner, Arguments arguments) {
        const bool isBlended = arguments[0] == u"blend";
        runner.chat().setTerm(arguments[1], isBlended ? QXSDKKovalinSearchModeBlend : QXSDKKovalinSearchModeReplace);
    });
    add("friend", [](Runner& runner, Arguments arguments) {
        runner.chat().setFriendId(arguments[0] == u"-" ? QString() : arguments[0]);
    });
    add("login", [](Runner& runner, Arguments /*none*/) { runner.logIn(); });
    add("logout", [](Runner& runner, Arguments /*none*/) { runner.logOut(); });
    add("background", [](Runner&, Arguments /*none*/) { Application::setState(ApplicationState::Background); });
    add("foreground", [](Runner&, Arguments /*none*/) { Application::setState(ApplicationState::Active); });
    add("clock", [](Runner& runner, Arguments arguments) { runner.moveClock(arguments[0].toInt()); });
    add("appear", [](Runner& runner, Arguments /*none*/) { runner.picker().viewWillAppear(); });
    add("disappear", [](Runner& runner, Arguments /*none*/) { runner.picker().viewWillDisappear(); });
    add("hide", [](Runner& runner, Arguments /*none*/) { runner.place().setFrameHidden(true); });
    add("show", [](Runner& runner, Arguments /*none*/) { runner.place().setFrameHidden(false); });
    add("clip", [](Runner& runner, Arguments arguments) {
        runner.place().cutTo(QSizeF(arguments[0].toInt(), arguments[1].toInt()));
    });
    add("unclip", [](Runner& runner, Arguments /*none*/) { runner.place().cutTo(std::nullopt); });
    add("window", [](Runner& runner, Arguments arguments) {
        runner.window().movePicker(runner._picker, arguments[0] == u"other");
    });
    add("resize", [](Runner& runner, Arguments arguments) {
        runner.resize({arguments[0].toInt(), arguments[1].toInt()});
    });
    add("picker", [](Runner& runner, Arguments arguments) { runner.choosePicker(arguments[0].toInt()); });
    add("theme", [](Runner& runner, Arguments arguments) { runner.chat().setDark(arguments[0] == u"dark"); });
    add("direction", [](Runner& runner, Arguments arguments) { runner.chat().setMirrored(arguments[0] == u"rtl"); });
    add("backend", [](Runner& runner, Arguments arguments) { runner.setAnswer(arguments[0]); });
}

void ScriptRunner::addFileHandlers(Handlers& handlers)
{
    const auto add = adderTo(handlers);
    add("screenshot", [](Runner& runner, Arguments arguments) { runner.screenshot(arguments[0]); });
    add("tree", [](Runner& runner, Arguments arguments) { runner.writeTree(arguments[0]); });
    add("events", [](Runner& runner, Arguments arguments) { runner.writeEvents(arguments[0]); });
}

} // namespace kovalin::host
