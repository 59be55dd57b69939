#include "search/QXSDKKovalinSearchSequence.h"

#include <utility>

void QXSDKKovalinSearchSequence::push(const QString& text, QXSDKKovalinCategory category)
{
    if (category == QXSDKKovalinCategoryNone) {
        return;
    }
    const auto term = std::make_shared<const QXSDKKovalinSearchTerm>(text, category);
    if (!_sequence.isEmpty() && _sequence.last()->isEqual(*term)) {
        return;
    }
    if (category != QXSDKKovalinCategoryTypedText && category != QXSDKKovalinCategoryHostTerm) {
        _sequence.append(term);
        return;
    }

    const auto next = nextState(text);
    const bool replacesLast = !_sequence.isEmpty() && _sequence.last() == _lastTextTerm &&
                              next == QXSDKKovalinSearchSequenceStateExtending &&
                              _state == QXSDKKovalinSearchSequenceStateExtending;
    if (replacesLast) {
        _sequence.removeLast();
    }
    _state = next;
    _lastTextTerm = term;
    if (next != QXSDKKovalinSearchSequenceStateShrinking) {
        _sequence.append(term);
    }
}

QXSDKKovalinSearchTermList QXSDKKovalinSearchSequence::popAll()
{
    auto terms = std::exchange(_sequence, {});
    terms.removeIf([](const QXSDKKovalinSearchTermPtr& term) { return term->value().isEmpty(); });
    _state = QXSDKKovalinSearchSequenceStateDiverged;
    _lastTextTerm.reset();
    return terms;
}

QXSDKKovalinSearchSequenceState QXSDKKovalinSearchSequence::nextState(const QString& text) const
{
    const QString last = lastTextEntry();
    if (last.isEmpty()) {
        return QXSDKKovalinSearchSequenceStateExtending;
    }
    if (text.size() >= last.size()) {
        return text.startsWith(last) ? QXSDKKovalinSearchSequenceStateExtending
                                     : QXSDKKovalinSearchSequenceStateDiverged;
    }
    // Every text starts with the empty one, but clearing the field is no shortening.
    return !text.isEmpty() && last.startsWith(text) ? QXSDKKovalinSearchSequenceStateShrinking
                                                    : QXSDKKovalinSearchSequenceStateDiverged;
}

QString QXSDKKovalinSearchSequence::lastTextEntry() const
{
    return _lastTextTerm ? _lastTextTerm->value() : QString();
}
