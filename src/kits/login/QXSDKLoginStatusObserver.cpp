#include "kits/login/QXSDKLoginStatusObserver.h"

QXSDKLoginStatusObserver::~QXSDKLoginStatusObserver() = default;
