#include "learned_search/generated-src/KovalinApiResponseConversion.h"

#include "learned_search/generated-src/NumberConversion.h"
#include "learned_search/generated-src/OptionalConversion.h"
#include "learned_search/generated-src/StringConversion.h"
#include "utils/HardAssert.h"

namespace djinni {

KovalinApiResponseConversion::Cpp KovalinApiResponseConversion::toCpp(const Platform& obj)
{
    KOVALIN_HARD_ASSERT(obj);
    return {BoolConversion::toCpp(obj->shouldUpdate()),
            OptionalConversion<StringConversion>::toCpp(obj->remoteModelUrl()),
            OptionalConversion<Int32Conversion>::toCpp(obj->remoteModelVersion())};
}

KovalinApiResponseConversion::Platform KovalinApiResponseConversion::fromCpp(const Cpp& record)
{
    return QXNativeKovalinApiResponse::KovalinApiResponseWithShouldUpdate(
        BoolConversion::fromCpp(record.shouldUpdate),
        OptionalConversion<StringConversion>::fromCpp(record.remoteModelUrl),
        OptionalConversion<Int32Conversion>::fromCpp(record.remoteModelVersion));
}

} // namespace djinni
