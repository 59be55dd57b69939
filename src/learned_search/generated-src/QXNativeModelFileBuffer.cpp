#include "learned_search/generated-src/QXNativeModelFileBuffer.h"

#include "learned_search/ModelFileBuffer.h"
#include "learned_search/generated-src/Exceptions.h"
#include "learned_search/generated-src/ModelFileBufferConversion.h"
#include "learned_search/generated-src/NumberConversion.h"
#include "learned_search/generated-src/OptionalConversion.h"
#include "learned_search/generated-src/StringConversion.h"

using namespace djinni;
using vole::learned_search::ModelFileBuffer;

QXNativeModelFileBuffer::QXNativeModelFileBuffer(const IdentityCache::Enrolment& enrolment,
                                                 const std::shared_ptr<ModelFileBuffer>& cpp)
    : _handle(enrolment, cpp)
{
}

std::shared_ptr<QXNativeModelFileBuffer>
QXNativeModelFileBuffer::modelFileBufferInstanceWithPath(const std::optional<QString>& path)
{
    return guarded("QXNativeModelFileBuffer modelFileBufferInstanceWithPath:", [&] {
        return ModelFileBufferConversion::fromCpp(
            ModelFileBuffer::modelFileBufferInstanceWithPath(OptionalConversion<StringConversion>::toCpp(path)));
    });
}

std::int64_t QXNativeModelFileBuffer::getAddress() const
{
    return guarded("QXNativeModelFileBuffer getAddress",
                   [&] { return Int64Conversion::fromCpp(_handle->getAddress()); });
}

std::int64_t QXNativeModelFileBuffer::getSize() const
{
    return guarded("QXNativeModelFileBuffer getSize", [&] { return Int64Conversion::fromCpp(_handle->getSize()); });
}

bool QXNativeModelFileBuffer::stateIsValid() const
{
    return guarded("QXNativeModelFileBuffer stateIsValid",
                   [&] { return BoolConversion::fromCpp(_handle->stateIsValid()); });
}

void QXNativeModelFileBuffer::dispose()
{
    guarded("QXNativeModelFileBuffer dispose", [&] { _handle->dispose(); });
}
