#pragma once

namespace kovalin::platform {

/// Where a queue stands in the life of the application object. Private to this folder.
enum class QueuePhase {
    Early,  ///< There has been no application object yet: jobs are kept.
    Open,   ///< There is one: jobs run.
    Closed, ///< The last one is gone or about to go: jobs are dropped.
};

} // namespace kovalin::platform
