#pragma once

#include <QtCore/QString>

/// The text of the picker that `key` names, in the current language (see QXSDKKovalinLanguage.h). A key that there is no text
/// for comes back as it is. Any thread.
[[nodiscard]] QString kovalinStringWithKey(const QString& key);
