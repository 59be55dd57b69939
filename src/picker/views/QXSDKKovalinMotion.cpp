#include "picker/views/QXSDKKovalinMotion.h"

#include "platform/ui/Animation.h"

void QXSDKKovalinSetReducedMotion(bool isReduced)
{
    kovalin::platform::setReducedMotion(isReduced);
}

bool QXSDKKovalinIsMotionReduced()
{
    return kovalin::platform::isMotionReduced();
}
