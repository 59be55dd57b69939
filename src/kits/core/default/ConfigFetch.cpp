#include "kits/core/default/ConfigFetch.h"

#include <utility>

namespace kovalin::kits {

ConfigFetch::~ConfigFetch()
{
    finish(false);
}

bool ConfigFetch::join(Completion& completion)
{
    const std::lock_guard lock(_mutex);
    if (_isOver) {
        return false;
    }
    _waiting.push_back(std::move(completion));
    return true;
}

void ConfigFetch::finish(bool success)
{
    std::vector<Completion> waiting;
    {
        const std::lock_guard lock(_mutex);
        _isOver = true;
        waiting.swap(_waiting);
    }
    for (const Completion& completion : waiting) {
        completion(success);
    }
}

} // namespace kovalin::kits
