#pragma once

#include <QtCore/QSet>
#include <QtCore/QString>

#include <cstddef>
#include <deque>

namespace kovalin::backend {

/// The ids that came last. One thread.
class RecentIds final {
public:
    /// Remembers so many.
    explicit RecentIds(std::size_t most)
        : _most(most)
    {
    }

    /// Remembers an id. False if it was known already; that doesn't make it a later one.
    bool add(const QString& id)
    {
        if (_known.contains(id)) {
            return false;
        }
        _known.insert(id);
        _inOrder.push_back(id);
        if (_inOrder.size() > _most) {
            _known.remove(_inOrder.front());
            _inOrder.pop_front();
        }
        return true;
    }

private:
    const std::size_t _most;
    QSet<QString> _known;
    std::deque<QString> _inOrder; // as they came
};

} // namespace kovalin::backend
