#pragma once

#include "kovalin-backend/AnswerRule.h"

#include <QtCore/QByteArray>

#include <map>
#include <mutex>

namespace kovalin::backend {

/// Which rule holds at which path. Any thread.
class AnswerRules final {
public:
    /// From the return of the call on the rule holds, in place of an earlier one for the same path.
    void set(const PathRule& pathRule);

    /// That of the path and "#" and the operation, unless this is empty, else that of the path itself, else that of its longest
    /// beginning, else `Usual`.
    [[nodiscard]] AnswerRule ruleFor(const QByteArray& path, const QByteArray& operation = {}) const;

private:
    mutable std::mutex _mutex;
    std::map<QByteArray, AnswerRule> _ofPaths;      // guarded by _mutex
    std::map<QByteArray, AnswerRule> _ofBeginnings; // guarded by _mutex; without the "*"
};

} // namespace kovalin::backend
