#include "search/QXSDKKovalinSearchEngine.h"

// Here, and not inline, so that each interface has one vtable for the whole process.
QXSDKKovalinSearchEngineObserver::~QXSDKKovalinSearchEngineObserver() = default;
QXSDKKovalinSearchEngine::~QXSDKKovalinSearchEngine() = default;
