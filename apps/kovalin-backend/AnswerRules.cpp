#include "kovalin-backend/AnswerRules.h"

namespace kovalin::backend {

void AnswerRules::set(const PathRule& pathRule)
{
    const std::lock_guard lock(_mutex);
    const QByteArray& path = pathRule.path;
    if (path.endsWith('*')) {
        _ofBeginnings.insert_or_assign(path.chopped(1), pathRule.rule);
    } else {
        _ofPaths.insert_or_assign(path, pathRule.rule);
    }
}

AnswerRule AnswerRules::ruleFor(const QByteArray& path, const QByteArray& operation) const
{
    const std::lock_guard lock(_mutex);
    if (const auto found = _ofPaths.find(path + '#' + operation); !operation.isEmpty() && found != _ofPaths.end()) {
        return found->second;
    }
    if (const auto found = _ofPaths.find(path); found != _ofPaths.end()) {
        return found->second;
    }
    // Of all beginnings of one path the longest comes last.
    for (auto each = _ofBeginnings.rbegin(); each != _ofBeginnings.rend(); ++each) {
        if (path.startsWith(each->first)) {
            return each->second;
        }
    }
    return {};
}

} // namespace kovalin::backend
