#include "content/QXSDKKovalinClientRequiredScope.h"

#include "kits/core/QXSDKClientSetup.h"

QString kQXSDKKovalinClientRequiredScope()
{
    return QXSDKClientSetup::shared()->authenticationBaseUrl + QStringLiteral("/oauth2/api/user.kovalin.avatar");
}
