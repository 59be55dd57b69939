#include "picker/config/KovalinColors.h"

#include "platform/foundation/Color.h"

QColor kovalinBlue()
{
    return QColor::fromRgbF(0.1F, 0.61F, 0.99F);
}

QColor kovalinGreen()
{
    return QColor::fromHsvF(0.4305F, 0.72F, 0.79F).toRgb();
}

QColor kovalinDarkGreen()
{
    return QColor::fromHsvF(0.4305F, 0.72F, 0.56F).toRgb();
}

QColor kovalinErrorRed()
{
    return QColor::fromRgbF(0.9059F, 0.298F, 0.2353F);
}

QColor kovalinGreyTextColor()
{
    return QColor::fromRgbF(0.5F, 0.51F, 0.53F);
}

QColor kovalinBorderColor()
{
    return QColor::fromRgbF(0.85F, 0.85F, 0.85F);
}

QColor kovalinNavIconColor()
{
    return kovalin::platform::colorWithHexString(u"#858E98");
}
