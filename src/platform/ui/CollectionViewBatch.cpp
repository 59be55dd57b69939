#include "platform/ui/CollectionViewBatch.h"

#include <numeric>

namespace kovalin::platform {

namespace {

/// Stays behind, in its order, among what neither goes nor moves.
constexpr qsizetype undecided = -2;

/// Decides about a place; false if there is none, or it was decided about.
bool decide(std::vector<qsizetype>& places, qsizetype item, qsizetype value)
{
    if (item < 0 || item >= std::ssize(places) || places[static_cast<size_t>(item)] != undecided) {
        return false;
    }
    places[static_cast<size_t>(item)] = value;
    return true;
}

QString faultOf(const char* what, qsizetype item, qsizetype count)
{
    return QStringLiteral("%1 item %2 of %3, which isn't there or was changed already")
        .arg(QLatin1String(what))
        .arg(item)
        .arg(count);
}

} // namespace

CollectionViewMapping CollectionViewMapping::identity(qsizetype count)
{
    CollectionViewMapping mapping;
    mapping.newItems.resize(static_cast<size_t>(count));
    std::iota(mapping.newItems.begin(), mapping.newItems.end(), 0);
    mapping.formerItems = mapping.newItems;
    return mapping;
}

void CollectionViewBatch::move(qsizetype from, qsizetype to)
{
    _moves.push_back({from, to});
}

bool CollectionViewBatch::map(qsizetype formerCount, qsizetype newCount, CollectionViewMapping& mapping,
                              QString& fault) const
{
    mapping.newItems.assign(static_cast<size_t>(formerCount), undecided);
    mapping.formerItems.assign(static_cast<size_t>(newCount), undecided);
    for (const qsizetype item : _deleted) {
        if (!decide(mapping.newItems, item, CollectionViewMapping::none)) {
            fault = faultOf("deletes", item, formerCount);
            return false;
        }
    }
    for (const qsizetype item : _inserted) {
        if (!decide(mapping.formerItems, item, CollectionViewMapping::none)) {
            fault = faultOf("inserts", item, newCount);
            return false;
        }
    }
    for (const auto [from, to] : _moves) {
        if (!decide(mapping.newItems, from, to)) {
            fault = faultOf("moves", from, formerCount);
            return false;
        }
        if (!decide(mapping.formerItems, to, from)) {
            fault = faultOf("moves something to", to, newCount);
            return false;
        }
    }
    size_t next = 0;
    for (size_t item = 0; item < mapping.newItems.size(); ++item) {
        if (mapping.newItems[item] != undecided) {
            continue;
        }
        while (next < mapping.formerItems.size() && mapping.formerItems[next] != undecided) {
            ++next;
        }
        if (next == mapping.formerItems.size()) {
            break;
        }
        mapping.newItems[item] = static_cast<qsizetype>(next);
        mapping.formerItems[next] = static_cast<qsizetype>(item);
    }
    const auto isDecided = [](const std::vector<qsizetype>& places) {
        return std::find(places.begin(), places.end(), undecided) == places.end();
    };
    if (!isDecided(mapping.newItems) || !isDecided(mapping.formerItems)) {
        fault = QStringLiteral("of %1 items makes %2, and the list has %3 now")
                    .arg(formerCount)
                    .arg(formerCount - _deleted.size() + _inserted.size())
                    .arg(newCount);
        return false;
    }
    return true;
}

} // namespace kovalin::platform
