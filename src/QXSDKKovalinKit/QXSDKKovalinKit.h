#pragma once

/// Everything that a host program may include.
#include "QXSDKKovalinKit/Version.h"
#include "kits/core/QXSDKOperationalMetricsQueue.h"
#include "search/KovalinPack.h"
#include "search/KovalinSticker.h"
#include "search/QXSDKKovalinCategory.h"
#include "search/QXSDKKovalinEmotion.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"
#include "search/QXSDKKovalinSearchEngine.h"
#include "search/QXSDKKovalinSearchResultType.h"
#include "search/QXSDKKovalinSearchSequence.h"
#include "search/QXSDKKovalinSearchTerm.h"
#include "search/QXSDKKovalinSet.h"
#include "search/QXSDKKovalinSetBuilder.h"
#include "search/QXSDKKovalinTagIndex.h"
#include "search/QXSDKKovalinTagRank.h"
