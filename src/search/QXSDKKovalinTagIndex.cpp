#include "search/QXSDKKovalinTagIndex.h"

// Here, and not inline, so that the interface has one vtable for the whole process.
QXSDKKovalinTagIndex::~QXSDKKovalinTagIndex() = default;
