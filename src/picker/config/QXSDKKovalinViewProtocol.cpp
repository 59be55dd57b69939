#include "picker/config/QXSDKKovalinViewProtocol.h"

QXSDKKovalinViewProtocol::~QXSDKKovalinViewProtocol() = default;

qint32 QXSDKKovalinViewProtocol::typeOf(const QXSDKKovalinViewProtocol* view)
{
    return view == nullptr ? 0 : view->type();
}
