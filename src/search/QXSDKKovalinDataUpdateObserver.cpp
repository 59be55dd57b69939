#include "search/QXSDKKovalinDataUpdateObserver.h"

QXSDKKovalinDataUpdateObserver::~QXSDKKovalinDataUpdateObserver() = default;
