#pragma once

#include <QtCore/QByteArray>

// Proof key for code exchange (RFC 7636). Any thread.

/// A fresh secret of 256 bits from the system's random numbers, as 43 letters, digits, "-" and "_".
[[nodiscard]] QByteArray freshSecret();

/// The challenge of method S256 that goes with `verifier`.
[[nodiscard]] QByteArray challengeOf(const QByteArray& verifier);
