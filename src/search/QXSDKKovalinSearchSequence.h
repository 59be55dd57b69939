#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "search/QXSDKKovalinCategory.h"
#include "search/QXSDKKovalinSearchTerm.h"

#include <QtCore/QString>

/// How the last text typed relates to the one before it.
enum QXSDKKovalinSearchSequenceState : int {
    /// It extends it, or is the first.
    QXSDKKovalinSearchSequenceStateExtending = 0,
    /// It is a shortening of it, though not to nothing.
    QXSDKKovalinSearchSequenceStateShrinking = 1,
    /// Neither; also the state at the start.
    QXSDKKovalinSearchSequenceStateDiverged = 2,
};

/// A short history of what was searched. Key strokes that extend a text become one term, key strokes that shorten it leave
/// none, a tap on a tag is a term of its own.
///
/// Main thread only.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinSearchSequence final {
public:
    QXSDKKovalinSearchSequence() = default;

    /// Takes in a search. Category 0 is no search and is ignored, and so is a repetition of the last term.
    void push(const QString& text, QXSDKKovalinCategory category);

    /// Hands over the history, oldest first, without terms of empty text, and starts afresh.
    [[nodiscard]] QXSDKKovalinSearchTermList popAll();

    /// How a typed text would relate to the last one; changes nothing. Lengths are in UTF-16 units, upper and lower case
    /// differ.
    [[nodiscard]] QXSDKKovalinSearchSequenceState nextState(const QString& text) const;

    /// The history as it stands, oldest first, terms of empty text included.
    [[nodiscard]] const QXSDKKovalinSearchTermList& sequence() const { return _sequence; }

    [[nodiscard]] QXSDKKovalinSearchSequenceState state() const { return _state; }

    /// The last text typed or set by the host; empty at the start.
    [[nodiscard]] QString lastTextEntry() const;

private:
    QXSDKKovalinSearchTermList _sequence;
    QXSDKKovalinSearchSequenceState _state = QXSDKKovalinSearchSequenceStateDiverged;
    /// The term of the last text typed, whether or not it is in the history; null at the start. The term itself and not
    /// its text, since an equal text that came another way must not be taken for it.
    QXSDKKovalinSearchTermPtr _lastTextTerm;
};
