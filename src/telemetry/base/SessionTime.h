#pragma once

#include <QtCore/QtGlobal>

/// One span during which a session was active. A plain record.
struct SessionTime {
    qint64 _start = 0; ///< Milliseconds since 1970; 0 when not set.
    qint64 _end = 0;   ///< The same unit; 0 while the span runs.
};
