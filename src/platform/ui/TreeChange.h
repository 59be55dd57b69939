#pragma once

#include <QtCore/QtGlobal>

#include <memory>

namespace kovalin::platform {

class View;

/// Tells views of changes of the tree once it stands. Qt Quick tells in the midst of a change, when the tree is half built
/// and nothing may be moved, deleted or told to others. Main thread only.
///
/// While a `TreeChange` lives, what is noted is kept; when the last one ends it is told, before the call that made the
/// change returns. What is noted without one, since the host moved an item, is told in a later turn of the main queue. A
/// view is told what is different from when it was told last, and nothing if that is nothing.
class TreeChange final {
public:
    TreeChange();
    ~TreeChange();
    Q_DISABLE_COPY_MOVE(TreeChange)

    /// Something about `view` may be different now. Held weakly.
    static void note(const std::weak_ptr<View>& view);
};

} // namespace kovalin::platform
