#include "platform/ui/TreeChange.h"

#include "platform/dispatch/MainQueue.h"
#include "platform/ui/View.h"

#include <utility>
#include <vector>

namespace kovalin::platform {

namespace {

struct Notes {
    std::vector<std::weak_ptr<View>> views;
    int openChanges = 0;
    bool isTellingPosted = false;
};

// Never destroyed: views may end when statics do.
Notes& notes()
{
    static auto* const notes = new Notes;
    return *notes;
}

} // namespace

/// Here and not in `View`, so that nobody else can call what it calls.
class TreeChangeTeller final {
public:
    static void tell()
    {
        while (!notes().views.empty()) {
            for (const auto& noted : std::exchange(notes().views, {})) {
                if (const auto view = noted.lock()) {
                    view->tellTreeChanges();
                }
            }
        }
    }
};

TreeChange::TreeChange()
{
    ++notes().openChanges;
}

TreeChange::~TreeChange()
{
    if (--notes().openChanges == 0) {
        TreeChangeTeller::tell();
    }
}

void TreeChange::note(const std::weak_ptr<View>& view)
{
    if (view.expired()) {
        return;
    }
    notes().views.push_back(view);
    if (notes().openChanges > 0 || notes().isTellingPosted) {
        return;
    }
    notes().isTellingPosted = true;
    dispatchMain([] {
        notes().isTellingPosted = false;
        TreeChangeTeller::tell();
    });
}

} // namespace kovalin::platform
