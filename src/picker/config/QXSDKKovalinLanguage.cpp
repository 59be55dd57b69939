#include "picker/config/QXSDKKovalinLanguage.h"

#include "picker/config/KovalinTexts.h"

#include <QtCore/QLocale>

QStringList QXSDKKovalinAvailableLanguages()
{
    return KovalinTexts::languages();
}

QString QXSDKKovalinCurrentLanguage()
{
    return KovalinTexts::current()->language();
}

void QXSDKKovalinSetPreferredLanguages(const QStringList& languages)
{
    KovalinTexts::setCurrent(
        KovalinTexts::inLanguages(languages.isEmpty() ? QLocale::system().uiLanguages() : languages));
}
