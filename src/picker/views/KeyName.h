#pragma once

#include <QtCore/QString>

/// The platform's word for a key, in the host's language, for a button that does what the key does: "Back". Any thread.
[[nodiscard]] QString nameOfKey(Qt::Key key);
