#include "telemetry/QXSDKKovalinViewVisibilityStateDelegate.h"

QXSDKKovalinViewVisibilityStateDelegate::~QXSDKKovalinViewVisibilityStateDelegate() = default;
