#pragma once

#include "QXSDKKovalinKit/Export.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

// The language of the picker's texts. It is chosen once, at the first use of a text: the first of the system's languages for user
// interfaces that there are texts in, else English. A country makes no difference, a script does: "de-AT" gets "de", and "zh-TW"
// gets "zh-Hant". A host that has a choice of languages of its own passes it on here.
//
// Any thread.

/// The languages that there are texts in, as "en" and "zh-Hans", sorted.
[[nodiscard]] QXSDKKOVALINKIT_EXPORT QStringList QXSDKKovalinAvailableLanguages();

/// The language that texts are in, one of the available ones.
[[nodiscard]] QXSDKKOVALINKIT_EXPORT QString QXSDKKovalinCurrentLanguage();

/// Chooses anew, from `languages` ("pt-BR", "he"), the most wanted first; from the system's where the list is empty. What isn't a
/// language is passed over. Views that are there keep their texts: to be called before a picker is made.
QXSDKKOVALINKIT_EXPORT void QXSDKKovalinSetPreferredLanguages(const QStringList& languages);
