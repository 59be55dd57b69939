#include "kits/core/QXSDKLayoutDirection.h"

#include <QtGui/QGuiApplication>

bool isRTL()
{
    return QGuiApplication::layoutDirection() == Qt::RightToLeft;
}
