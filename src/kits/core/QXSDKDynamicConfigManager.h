#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "kits/core/QXSDKDynamicConfig.h"

#include <QtCore/QString>

#include <functional>
#include <memory>

/// Where dynamic configurations come from. Any thread.
///
/// A host installs a source of its own, or the one that comes with the kit.
class QXSDKKOVALINKIT_EXPORT QXSDKDynamicConfigManager {
public:
    using UpdateCompletion = std::function<void(bool success)>;

    virtual ~QXSDKDynamicConfigManager();

    /// The configuration of that name as it is known now; null where there is none. Never waits.
    [[nodiscard]] virtual std::shared_ptr<const QXSDKDynamicConfig> dynamicConfig(const QString& name) const = 0;

    /// Refreshes the configurations if that is due. The completion, which must not be empty, is called exactly once, on any
    /// thread, perhaps before this returns: true if the configurations are fresh.
    virtual void updateIfNecessary(UpdateCompletion completion) = 0;

    /// The source that is installed for the process; never null. Before one is installed, it knows nothing and can't be
    /// refreshed. Any thread.
    [[nodiscard]] static std::shared_ptr<QXSDKDynamicConfigManager> shared();

    /// Installs a source; null takes it away. Any thread.
    static void setShared(std::shared_ptr<QXSDKDynamicConfigManager> manager);
};
