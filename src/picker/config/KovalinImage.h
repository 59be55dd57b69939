#pragma once

#include "platform/foundation/VectorImage.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

/// The picture of the picker that `name` names ("search-back"), in its own colours; a null one for a name that there is no picture
/// for. Any thread; each picture is read once.
///
/// Which way a picture points is a view's business: a view mirrors "search-back" where it reads from right to left.
[[nodiscard]] kovalin::platform::VectorImage kovalinImageNamed(const QString& name);

/// The names of all pictures, sorted. Any thread.
[[nodiscard]] QStringList kovalinImageNames();
