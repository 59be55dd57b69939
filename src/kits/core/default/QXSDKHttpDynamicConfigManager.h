#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "kits/core/QXSDKDynamicConfigManager.h"

#include <QtCore/QString>
#include <QtCore/QtGlobal>

#include <memory>

/// Where an HTTP configuration manager keeps the last good answer. A value.
struct QXSDKHttpDynamicConfigOptions {
    /// The folder of its file "qxsdk-dynamic-configs.json", made when it is needed; empty for the caches directory.
    QString folder = {};
};

/// The source of dynamic configurations that comes with the kit. It gets "/configs?client_id=…" below the `apiBaseUrl` of the
/// client setup:
///
///     {"ttlSeconds": 3600, "configs": {"name": {…}, …}}
///
/// An answer is good when its status is 200 and it is such an object, of 1 MiB at the most; a configuration in it that is no
/// object is left out. The last good answer is kept on disk, and is known until there is another one, however old it is: for the
/// client id and base URL that it was fetched for. For others nothing is known.
///
/// Any thread. Lifetime: destroying it breaks off a fetch under way.
class QXSDKKOVALINKIT_EXPORT QXSDKHttpDynamicConfigManager final : public QXSDKDynamicConfigManager {
public:
    /// Reads what is on disk, on this thread: one file of 1 MiB at the most, commonly of a few hundred bytes, so that the
    /// configurations are known from the start, by which the library decides once for the process. A file that is damaged, too
    /// long or of another kind counts as none, and is replaced with the next good answer.
    explicit QXSDKHttpDynamicConfigManager(const QXSDKHttpDynamicConfigOptions& options = {});
    ~QXSDKHttpDynamicConfigManager() override;
    Q_DISABLE_COPY_MOVE(QXSDKHttpDynamicConfigManager)

    [[nodiscard]] std::shared_ptr<const QXSDKDynamicConfig> dynamicConfig(const QString& name) const override;

    /// Fetches when that is due: nothing is known, or what is known is older than the "ttlSeconds" that came with it (a minute to
    /// 7 days; an hour where there is none) or from after now. Otherwise the completion is called with true before this returns.
    ///
    /// Calls during a fetch join it; it ends after 10 seconds without a byte. Their completions get true for a good answer and
    /// false for any other end, on a thread of the library's, the destroyer's, or, where there is no application object any
    /// more, before this returns. They shouldn't block.
    ///
    /// After a failure the server is left alone for 15 to 30 seconds, doubled with each further one up to an hour, and for as
    /// long as its "Retry-After" says, of which up to an hour is granted. Meanwhile the completion is called with false before
    /// this returns. A clock that is set back, or another client setup, ends that.
    void updateIfNecessary(UpdateCompletion completion) override;

private:
    struct State;

    const std::shared_ptr<State> _state;
};
