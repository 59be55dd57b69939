#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace kovalin::kits {

/// What the login button says in a language ("de", "zh-Hant"), or in English where there is no text in it. Any thread.
[[nodiscard]] QString loginButtonTitle(const QString& language);

/// The languages that there are texts in. Any thread.
[[nodiscard]] QStringList loginButtonLanguages();

} // namespace kovalin::kits
