#include "kits/core/default/AnalyticsOutbox.h"

#include "kits/core/InstalledClientSetup.h"
#include "platform/foundation/Guarded.h"
#include "platform/foundation/NotificationCenter.h"

#include <QtCore/QHash>

#include <utility>

namespace kovalin::kits {

namespace {

/// By a file's path, how many of this process's opt-outs it has been erased for.
platform::Guarded<QHash<QString, quint64>>& erasures()
{
    // Never destroyed: a queue may be made or end while the process does.
    static auto& state = *new platform::Guarded<QHash<QString, quint64>>;
    return state;
}

quint64 erasuresOf(const QString& path)
{
    return erasures().with([&path](const auto& counts) { return counts.value(path); });
}

void noteErasures(const QString& path, quint64 count)
{
    erasures().with([&path, count](auto& counts) { counts.insert(path, count); });
}

} // namespace

std::shared_ptr<AnalyticsOutbox> AnalyticsOutbox::create(OutboxOptions options)
{
    const std::shared_ptr<AnalyticsOutbox> outbox(new AnalyticsOutbox(std::move(options)));
    platform::NotificationCenter::qxsdkCenter().addObserver(outbox, &AnalyticsOutbox::_followSetup,
                                                            kQXSDKClientSetupDidChangeNotification);
    outbox->_followSetup(); // for a change that came in between
    return outbox;
}

AnalyticsOutbox::AnalyticsOutbox(OutboxOptions options)
    : _path(options.path)
{
    const auto installed = installedClientSetup();
    _optOuts = installed->optOuts;
    options.beginsRefusing = !installed->setup.isAnalyticsEnabled || _optOuts != erasuresOf(_path);
    _outbox = std::make_unique<Outbox>(std::move(options));
    noteErasures(_path, _optOuts);
    if (installed->setup.isAnalyticsEnabled) {
        _outbox->accept();
    }
}

void AnalyticsOutbox::add(QByteArray bytes)
{
    _outbox->add(std::move(bytes));
}

void AnalyticsOutbox::end()
{
    std::unique_ptr<Outbox> outbox; // goes after the lock
    const std::lock_guard lock(_mutex);
    outbox = std::move(_outbox);
}

void AnalyticsOutbox::_followSetup()
{
    const std::lock_guard lock(_mutex);
    if (!_outbox) {
        return;
    }
    const auto installed = installedClientSetup();
    if (_optOuts != installed->optOuts) {
        _optOuts = installed->optOuts;
        _outbox->eraseAndRefuse();
        noteErasures(_path, _optOuts);
    }
    if (installed->setup.isAnalyticsEnabled) {
        _outbox->accept();
    }
}

} // namespace kovalin::kits
