#include "search/QXSDKKovalinSearchResultType.h"

bool QXSDKKovalinSearchResultTypeHasAll(const QXSDKKovalinSearchResultTypes& resultTypes)
{
    return resultTypes.contains(QXSDKKovalinSearchResultTypeSolovalin) &&
           resultTypes.contains(QXSDKKovalinSearchResultTypeFriendvalin);
}

bool QXSDKKovalinSearchResultTypeHasFriendvalin(const QXSDKKovalinSearchResultTypes& resultTypes)
{
    return resultTypes.contains(QXSDKKovalinSearchResultTypeFriendvalin);
}

std::function<bool(const KovalinSticker&)>
QXSDKKovalinSearchResultTypeToPredicate(const QXSDKKovalinSearchResultTypes& resultTypes)
{
    const bool wantsSolovalin = resultTypes.contains(QXSDKKovalinSearchResultTypeSolovalin);
    const bool wantsFriendvalin = resultTypes.contains(QXSDKKovalinSearchResultTypeFriendvalin);
    return [wantsSolovalin, wantsFriendvalin](const KovalinSticker& sticker) {
        return sticker.isFriendvalin() ? wantsFriendvalin : wantsSolovalin;
    };
}
