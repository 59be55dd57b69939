#include "picker/config/KovalinString.h"

#include "picker/config/KovalinTexts.h"

QString kovalinStringWithKey(const QString& key)
{
    return KovalinTexts::current()->textWithKey(key);
}
