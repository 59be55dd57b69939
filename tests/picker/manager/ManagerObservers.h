#pragma once

#include "picker/config/QXSDKKovalinViewProtocol.h"
#include "picker/manager/QXSDKKovalinViewManagerObserver.h"
#include "search/QXSDKKovalinDataUpdateObserver.h"

#include <atomic>
#include <functional>
#include <vector>

namespace kovalin::test {

/// Notes the types of the views that become current, 0 for none. Main thread only.
class RecordingManagerObserver final : public QXSDKKovalinViewManagerObserver {
public:
    void currentViewChanged(QXSDKKovalinViewProtocol* view) override
    {
        types.push_back(QXSDKKovalinViewProtocol::typeOf(view));
        if (then) {
            then(view);
        }
    }

    std::vector<qint32> types;
    std::function<void(const QXSDKKovalinViewProtocol* view)> then;
};

/// Counts what it is told of content. Any thread.
class CountingContentObserver final : public QXSDKKovalinDataUpdateObserver {
public:
    void contentDidLoadWithPacks(const std::optional<KovalinPackList>&) override { ++loads; }
    void contentLoadDidFail(const QXSDKError&) override { ++failures; }

    std::atomic<int> loads = 0;
    std::atomic<int> failures = 0;
};

} // namespace kovalin::test
